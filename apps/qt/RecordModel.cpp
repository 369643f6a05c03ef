#include "marlune/qt/RecordModel.h"

#include "Ground.h"
#include "TableCells.h"
#include "marlune/RecordFiles.h"
#include "marlune/qt/TrackFacts.h"

namespace marlune::qt {
namespace {

// A point of any kind: what its record knows.
struct PointRow {
    QString name;
    QString comment;
    double latitude = 0;
    double longitude = 0;
    std::optional<float> altitude;
    std::optional<float> depth;
    std::optional<float> temperature;
    std::optional<float> proximity;
    std::optional<double> time;
    QString symbol;
    QString link;     // to the next point of a route
    QString segment;  // of a track
};

struct TrackRow : TrackFacts {
    QString name;
};

struct RouteRow {
    int number = 0;
    QString name;
    int points = 0;
    double length = 0;
};

QString symbolText(std::optional<std::int16_t> symbol) {
    if (!symbol) {
        return {};
    }
    const QString name = QString::fromStdString(symbolName(*symbol));
    return name.isEmpty() ? QString::number(*symbol) : name;
}

PointRow tableRow(const WaypointRecord& waypoint) {
    return {.name = QString::fromStdString(waypoint.name),
            .comment = QString::fromStdString(waypoint.comment),
            .latitude = waypoint.latitude,
            .longitude = waypoint.longitude,
            .altitude = waypoint.altitude,
            .depth = waypoint.depth,
            .temperature = waypoint.temperature,
            .proximity = waypoint.proximity,
            .time = waypoint.time,
            .symbol = symbolText(waypoint.symbol),
            .link = {},
            .segment = {}};
}

PointRow tableRow(const RoutePointRecord& point) {
    PointRow row = tableRow(point.point);
    row.link = point.link ? QString::fromStdString(point.link->name) : QString();
    return row;
}

PointRow tableRow(const TrackPointRecord& point) {
    PointRow row;
    row.latitude = point.latitude;
    row.longitude = point.longitude;
    row.altitude = point.altitude;
    row.depth = point.depth;
    row.temperature = point.temperature;
    row.time = point.time;
    row.segment =
        point.segmentStart ? tableText(QT_TRANSLATE_NOOP("RecordModel", "begins")) : QString();
    return row;
}

TrackRow tableRow(const TrackRecord& track) {
    TrackRow row;
    static_cast<TrackFacts&>(row) = factsOf(track);
    row.name = QString::fromStdString(track.name);
    return row;
}

RouteRow tableRow(const RouteRecord& route) {
    RouteRow row{.number = route.number,
                 .name = QString::fromStdString(route.name),
                 .points = static_cast<int>(route.points.size())};
    for (std::size_t i = 1; i < route.points.size(); ++i) {
        row.length += groundDistance(route.points[i - 1].point, route.points[i].point);
    }
    return row;
}

std::vector<Column<PointRow>> columnsOf(RecordModel::Kind kind) {
    using Point = PointRow;
    const auto name = textColumn<Point, &Point::name>(QT_TRANSLATE_NOOP("RecordModel", "Name"));
    const Column<Point> position = {QT_TRANSLATE_NOOP("RecordModel", "Position"),
                                    [](const Point& row) { return CellKey(row.latitude); },
                                    [](const Point& row, Units /*units*/) {
                                        return positionText(row.latitude, row.longitude);
                                    }};
    const auto altitude = numberColumn<Point, &Point::altitude, heightText>(
        QT_TRANSLATE_NOOP("RecordModel", "Altitude"));
    const auto depth =
        numberColumn<Point, &Point::depth, heightText>(QT_TRANSLATE_NOOP("RecordModel", "Depth"));
    const auto temperature = numberColumn<Point, &Point::temperature, warmthText>(
        QT_TRANSLATE_NOOP("RecordModel", "Temperature"));
    const auto time =
        numberColumn<Point, &Point::time, dateText>(QT_TRANSLATE_NOOP("RecordModel", "Time"));
    if (kind == RecordModel::Kind::trackPoints) {
        const auto segment =
            textColumn<Point, &Point::segment>(QT_TRANSLATE_NOOP("RecordModel", "Segment"));
        return {time, position, altitude, depth, temperature, segment};
    }
    const auto symbol =
        textColumn<Point, &Point::symbol>(QT_TRANSLATE_NOOP("RecordModel", "Symbol"));
    const auto comment =
        textColumn<Point, &Point::comment>(QT_TRANSLATE_NOOP("RecordModel", "Comment"));
    if (kind == RecordModel::Kind::routePoints) {
        const auto link = textColumn<Point, &Point::link>(QT_TRANSLATE_NOOP("RecordModel", "Link"));
        return {name, position, altitude, symbol, comment, link};
    }
    const auto proximity = numberColumn<Point, &Point::proximity, lengthText>(
        QT_TRANSLATE_NOOP("RecordModel", "Proximity"));
    return {name, position, altitude, symbol, comment, time, depth, temperature, proximity};
}

std::vector<Column<TrackRow>> trackColumns() {
    using Track = TrackRow;
    return {
        textColumn<Track, &Track::name>(QT_TRANSLATE_NOOP("RecordModel", "Name")),
        numberColumn<Track, &Track::points, countText>(QT_TRANSLATE_NOOP("RecordModel", "Points")),
        numberColumn<Track, &Track::length, lengthText>(QT_TRANSLATE_NOOP("RecordModel", "Length")),
        numberColumn<Track, &Track::climb, heightText>(QT_TRANSLATE_NOOP("RecordModel", "Climb")),
        numberColumn<Track, &Track::duration, lastingText>(
            QT_TRANSLATE_NOOP("RecordModel", "Duration")),
        numberColumn<Track, &Track::start, dateText>(QT_TRANSLATE_NOOP("RecordModel", "Start"))};
}

std::vector<Column<RouteRow>> routeColumns() {
    using Route = RouteRow;
    return {
        numberColumn<Route, &Route::number, countText>(QT_TRANSLATE_NOOP("RecordModel", "Number")),
        textColumn<Route, &Route::name>(QT_TRANSLATE_NOOP("RecordModel", "Name")),
        numberColumn<Route, &Route::points, countText>(QT_TRANSLATE_NOOP("RecordModel", "Points")),
        numberColumn<Route, &Route::length, lengthText>(
            QT_TRANSLATE_NOOP("RecordModel", "Length"))};
}

template <class Row>
CellsOf<Row>& cellsOf(TableCells& cells) {
    return static_cast<CellsOf<Row>&>(cells);
}

template <class Row, class Record>
void fill(TableCells& cells, const std::vector<Record>& records) {
    std::vector<Row>& rows = cellsOf<Row>(cells).rows;
    rows.clear();
    rows.reserve(records.size());
    for (const Record& record : records) {
        rows.push_back(tableRow(record));
    }
}

bool fits(RecordModel::Kind kind, RecordModel::Kind records) {
    if (kind != records) {
        qWarning("RecordModel: the records are of another kind than the model's");
    }
    return kind == records;
}

}  // namespace

RecordModel::RecordModel(Kind kind, QObject* parent)
    : SortedTable(std::make_unique<CellsOf<PointRow>>(columnsOf(kind)), parent), kind_(kind) {}

RecordModel::~RecordModel() = default;

RecordModel::Kind RecordModel::kind() const {
    return kind_;
}

void RecordModel::setWaypoints(std::vector<WaypointRecord> waypoints) {
    if (fits(kind_, Kind::waypoints)) {
        replaceRows([&] { fill<PointRow>(cells(), waypoints); });
    }
}

void RecordModel::setTrackPoints(std::vector<TrackPointRecord> points) {
    if (fits(kind_, Kind::trackPoints)) {
        replaceRows([&] { fill<PointRow>(cells(), points); });
    }
}

void RecordModel::setRoutePoints(std::vector<RoutePointRecord> points) {
    if (fits(kind_, Kind::routePoints)) {
        replaceRows([&] { fill<PointRow>(cells(), points); });
    }
}

void RecordModel::append(const WaypointRecord& waypoint) {
    if (fits(kind_, Kind::waypoints)) {
        appendRow([&] { cellsOf<PointRow>(cells()).rows.push_back(tableRow(waypoint)); });
    }
}

void RecordModel::append(const TrackPointRecord& point) {
    if (fits(kind_, Kind::trackPoints)) {
        appendRow([&] { cellsOf<PointRow>(cells()).rows.push_back(tableRow(point)); });
    }
}

void RecordModel::append(const RoutePointRecord& point) {
    if (fits(kind_, Kind::routePoints)) {
        appendRow([&] { cellsOf<PointRow>(cells()).rows.push_back(tableRow(point)); });
    }
}

void RecordModel::clear() {
    replaceRows([&] { cellsOf<PointRow>(cells()).rows.clear(); });
}

TrackModel::TrackModel(QObject* parent)
    : SortedTable(std::make_unique<CellsOf<TrackRow>>(trackColumns()), parent) {}

TrackModel::~TrackModel() = default;

void TrackModel::setTracks(std::vector<TrackRecord> tracks) {
    replaceRows([&] {
        tracks_ = std::move(tracks);
        fill<TrackRow>(cells(), tracks_);
    });
}

const std::vector<TrackRecord>& TrackModel::tracks() const {
    return tracks_;
}

RouteModel::RouteModel(QObject* parent)
    : SortedTable(std::make_unique<CellsOf<RouteRow>>(routeColumns()), parent) {}

RouteModel::~RouteModel() = default;

void RouteModel::setRoutes(std::vector<RouteRecord> routes) {
    replaceRows([&] {
        routes_ = std::move(routes);
        fill<RouteRow>(cells(), routes_);
    });
}

const std::vector<RouteRecord>& RouteModel::routes() const {
    return routes_;
}

}  // namespace marlune::qt
