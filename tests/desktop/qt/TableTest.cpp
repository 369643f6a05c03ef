// Records as tables, what a track tells of itself, and the texts of numbers.
#include <QtCore/QLocale>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include "marlune/qt/RecordModel.h"
#include "marlune/qt/TrackFacts.h"

namespace marlune::qt {

class TableTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale("en_GB")); }
    void sortsByValues();
    void keepsIndexesAtTheirRecords();
    void refusesOtherRecords();
    void appendsBehindTheOthers();
    void tellsTracksAndRoutes();
    void factsOfATrack();
    void climbsAboveTheNoise();
    void readsInTheUsersUnits();
    void readsInTheUsersLocale();
};

namespace {

WaypointRecord waypoint(const char* name, std::optional<float> altitude = std::nullopt) {
    WaypointRecord record;
    record.name = name;
    record.altitude = altitude;
    return record;
}

TrackPointRecord trackPoint(double latitude, double longitude, bool begins = false) {
    TrackPointRecord point;
    point.latitude = latitude;
    point.longitude = longitude;
    point.segmentStart = begins;
    return point;
}

TrackRecord trackOfAltitudes(const std::vector<float>& altitudes) {
    TrackRecord track;
    for (const float altitude : altitudes) {
        track.points.push_back(trackPoint(0, 0, track.points.empty()));
        track.points.back().altitude = altitude;
    }
    return track;
}

int columnOf(const QAbstractItemModel& model, const QString& title) {
    for (int column = 0; column < model.columnCount(); ++column) {
        if (model.headerData(column, Qt::Horizontal).toString() == title) {
            return column;
        }
    }
    return -1;
}

QString cell(const QAbstractItemModel& model, int row, const QString& title) {
    return model.index(row, columnOf(model, title)).data().toString();
}

QString names(const QAbstractItemModel& model) {
    QStringList all;
    for (int row = 0; row < model.rowCount(); ++row) {
        all << cell(model, row, "Name");
    }
    return all.join(' ');
}

}  // namespace

// Texts would sort 1037 m in front of 375 m, and W10 in front of W2.
void TableTest::sortsByValues() {
    RecordModel model(RecordModel::Kind::waypoints);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setWaypoints(
        {waypoint("W10", 1037), waypoint("w2", 375), waypoint("none"), waypoint("twin", 375)});
    QCOMPARE(names(model), "W10 w2 none twin");

    const int altitude = columnOf(model, "Altitude");
    model.sort(altitude);
    QCOMPARE(names(model), "w2 twin W10 none");
    model.sort(altitude, Qt::DescendingOrder);
    QCOMPARE(names(model), "W10 w2 twin none");  // equal ones keep their order, empty ones are last
    QCOMPARE(model.index(1, altitude).data(SortRole), 375.0);
    QCOMPARE(model.index(3, altitude).data(SortRole), QVariant());
    QCOMPARE(model.index(3, altitude).data(), "");
    QCOMPARE(model.recordOf(1), 1);
    QCOMPARE(model.rowOf(3), 2);
    QCOMPARE(model.rowOf(4), -1);
    QCOMPARE(model.headerData(1, Qt::Vertical), 2);

    model.sort(columnOf(model, "Name"));
    QCOMPARE(names(model), "none twin w2 W10");
    model.setWaypoints({waypoint("b"), waypoint("a")});
    QCOMPARE(names(model), "a b");  // what comes instead is sorted alike
    model.sort(-1);
    QCOMPARE(names(model), "b a");
}

// A selection stays with what was selected.
void TableTest::keepsIndexesAtTheirRecords() {
    RecordModel model(RecordModel::Kind::waypoints);
    model.setWaypoints({waypoint("c"), waypoint("a"), waypoint("b")});
    const QPersistentModelIndex selected(model.index(0, 0));
    model.sort(0);
    QCOMPARE(selected.data(), "c");
    QCOMPARE(selected.row(), 2);
}

void TableTest::refusesOtherRecords() {
    RecordModel model(RecordModel::Kind::trackPoints);
    model.setTrackPoints({trackPoint(45, 7)});
    QTest::ignoreMessage(QtWarningMsg,
                         "RecordModel: the records are of another kind than the model's");
    model.setWaypoints({waypoint("a"), waypoint("b")});
    QTest::ignoreMessage(QtWarningMsg,
                         "RecordModel: the records are of another kind than the model's");
    model.append(waypoint("a"));
    QCOMPARE(model.rowCount(), 1);
}

void TableTest::appendsBehindTheOthers() {
    RecordModel model(RecordModel::Kind::routePoints);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    RoutePointRecord point{.point = waypoint("b"),
                           .link = RouteLinkRecord{.linkClass = 0, .subclass = {}, .name = "N90"}};
    model.setRoutePoints({point, {.point = waypoint("c"), .link = {}}});
    model.sort(0, Qt::DescendingOrder);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    model.append({.point = waypoint("z"), .link = {}});
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(names(model), "c b z");
    QCOMPARE(cell(model, 1, "Link"), "N90");
    model.clear();
    QCOMPARE(model.rowCount(), 0);
}

void TableTest::tellsTracksAndRoutes() {
    TrackRecord track = trackOfAltitudes({100, 200});
    track.name = "TOUR";
    track.points[1].latitude = 1;
    track.points[0].time = 0;
    track.points[1].time = 11235;
    TrackModel tracks;
    const QAbstractItemModelTester tester(&tracks,
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    tracks.setTracks({track, trackOfAltitudes({1})});
    tracks.sort(columnOf(tracks, "Length"));
    QCOMPARE(cell(tracks, 1, "Name"), "TOUR");
    QCOMPARE(cell(tracks, 1, "Points"), "2");
    QCOMPARE(cell(tracks, 1, "Length"), "111.2 km");
    QCOMPARE(cell(tracks, 1, "Climb"), "100 m");
    QCOMPARE(cell(tracks, 1, "Duration"), "3:07:15");
    QCOMPARE(cell(tracks, 0, "Duration"), "");
    QCOMPARE(tracks.tracks().at(0).name, "TOUR");

    RouteModel routes;
    RouteRecord route{
        .number = 3,
        .name = "HOME",
        .points = {{.point = waypoint("a"), .link = {}}, {.point = waypoint("b"), .link = {}}}};
    route.points[1].point.longitude = 1;
    routes.setRoutes({route});
    routes.setUnits(Units::nautical);
    QCOMPARE(cell(routes, 0, "Number"), "3");
    QCOMPARE(cell(routes, 0, "Length"), "60.0 NM");
}

// Gaps between segments are no part of the track.
void TableTest::factsOfATrack() {
    TrackRecord track;
    track.points = {trackPoint(0, 0, true), trackPoint(0, 1), trackPoint(10, 10, true),
                    trackPoint(11, 10)};
    track.points[1].time = 100;
    track.points[3].time = 400;
    const TrackFacts facts = factsOf(track);
    constexpr double kDegree = 111195.08;  // of a sphere of 6371008.8 m
    QVERIFY(std::abs(facts.length - 2 * kDegree) < 0.1);
    QCOMPARE(facts.points, 4);
    QCOMPARE(*facts.start, 100);
    QCOMPARE(*facts.duration, 300);
    QVERIFY(!facts.climb && !facts.lowest);
    const std::vector<double> along = distancesAlong(track);
    QVERIFY(std::abs(along[1] - kDegree) < 0.1);
    QCOMPARE(along[2], along[1]);
    QCOMPARE(along[3], facts.length);
    QVERIFY(distancesAlong({}).empty());
    QCOMPARE(factsOf({}).length, 0);

    track.points = {trackPoint(89.9, 0, true), trackPoint(89.9, 180)};  // over the pole
    QVERIFY(std::abs(factsOf(track).length - 0.2 * kDegree) < 0.1);
    track.points = {trackPoint(0, 179.5, true), trackPoint(0, -179.5)};  // over the date line
    QVERIFY(std::abs(factsOf(track).length - kDegree) < 0.1);
}

void TableTest::climbsAboveTheNoise() {
    const auto climbOf = [](const std::vector<float>& altitudes) {
        const TrackFacts facts = factsOf(trackOfAltitudes(altitudes));
        return QPair<double, double>(*facts.climb, *facts.descent);
    };
    using Pair = QPair<double, double>;
    QCOMPARE(climbOf({100, 103, 99, 104, 100}), Pair(0, 0));
    QCOMPARE(climbOf({100, 103, 106, 109, 112}), Pair(12, 0));  // in steps below the noise
    QCOMPARE(climbOf({100, 150, 147, 200, 120}), Pair(100, 80));
    QCOMPARE(climbOf({200, 100, 200}), Pair(100, 100));
    QCOMPARE(climbOf({0}), Pair(0, 0));
    TrackRecord gap = trackOfAltitudes({100, 120, 500, 510});
    gap.points[2].segmentStart = true;
    QCOMPARE(*factsOf(gap).climb, 30);
    QCOMPARE(*factsOf(gap).highest, 510);
}

void TableTest::readsInTheUsersUnits() {
    QCOMPARE(lengthText(850, Units::metric), "850 m");
    QCOMPARE(lengthText(999.6, Units::metric), "1.0 km");
    QCOMPARE(lengthText(1234567, Units::metric), "1234.6 km");
    QCOMPARE(lengthText(12400, Units::nautical), "6.7 NM");
    QCOMPARE(lengthText(66305, Units::imperial), "41.2 mi");
    QCOMPARE(lengthText(30.48, Units::imperial), "100 ft");
    QCOMPARE(heightText(1208, Units::metric), "1208 m");
    QCOMPARE(heightText(1208, Units::imperial), "3963 ft");
    QCOMPARE(heightText(-0.2, Units::metric), "0 m");
    QCOMPARE(speedText(1.5, Units::metric), "5.4 km/h");
    QCOMPARE(speedText(1.5, Units::nautical), "2.9 kn");
    QCOMPARE(speedText(1.5, Units::imperial), "3.4 mph");
    QCOMPARE(durationText(11235), "3:07:15");
    QCOMPARE(durationText(359999.6), "100:00:00");
    QCOMPARE(positionText(46.40271, -6.11823), "46.40271° N 6.11823° W");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QCOMPARE(lengthText(nan, Units::metric), "– km");
    QCOMPARE(durationText(nan), "–");
    QCOMPARE(timeText(nan), "–");
}

void TableTest::readsInTheUsersLocale() {
    const QDateTime afternoon(QDate(2007, 1, 15), QTime(13, 4, 5));
    const auto time = static_cast<double>(afternoon.toSecsSinceEpoch());
    QLocale::setDefault(QLocale("fr_FR"));
    QCOMPARE(lengthText(12400, Units::metric), "12,4 km");
    QCOMPARE(timeText(time), "15/01/2007 13:04:05");
    QLocale::setDefault(QLocale("en_US"));
    QCOMPARE(timeText(time), "1/15/07 1:04:05 PM");
}

}  // namespace marlune::qt

QTEST_GUILESS_MAIN(marlune::qt::TableTest)
#include "TableTest.moc"
