#include <ostream>

#include "resources/SymbolTable.h"
#include "storage/formats/CsvColumns.h"
#include "storage/formats/RecordValues.h"
#include "storage/formats/Writers.h"

namespace marlune {
namespace {

using Row = std::array<std::string, csv::kColumns>;

void writeField(std::ostream& out, std::string_view field) {
    if (field.find_first_of(",;\"\r\n") == std::string_view::npos) {
        out << field;
        return;
    }
    out << '"';
    for (const char c : field) {
        out << c << (c == '"' ? "\"" : "");
    }
    out << '"';
}

template <class Fields>
void writeRow(std::ostream& out, const Fields& fields) {
    const char* separator = "";
    for (const auto& field : fields) {
        out << separator;
        writeField(out, field);
        separator = ",";
    }
    out << '\n';
}

class CsvWriter : public RecordWriter {
public:
    explicit CsvWriter(std::ostream& out) : out_(out) { writeRow(out_, csv::kNames); }

    void waypoint(const WaypointRecord& waypoint) override {
        writePlace(csv::kWaypoint, waypoint, nullptr);
    }

    void route(const RouteRecord& head) override {
        Row row;
        row[csv::kKind] = csv::kRoute;
        row[csv::kName] = gpxText(head.name);
        row[csv::kNumber] = std::to_string(head.number);
        writeRow(out_, row);
    }

    void routePoint(const RoutePointRecord& point) override {
        writePlace(csv::kRoutePoint, point.point, point.link ? &*point.link : nullptr);
    }

    void track(const TrackRecord& head) override {
        Row row;
        row[csv::kKind] = csv::kTrack;
        row[csv::kName] = gpxText(head.name);
        if (head.display) {
            row[csv::kDisplay] = *head.display ? "1" : "0";
        }
        if (head.colour) {
            row[csv::kColour] = std::to_string(*head.colour);
        }
        writeRow(out_, row);
    }

    void trackPoint(const TrackPointRecord& point) override {
        Row row;
        if (!putPosition(row, point.latitude, point.longitude)) {
            return;
        }
        row[csv::kKind] = csv::kTrackPoint;
        row[csv::kAltitude] = fileNumber(point.altitude);
        row[csv::kTime] = fileTime(point.time);
        row[csv::kDepth] = fileNumber(point.depth);
        row[csv::kTemperature] = fileNumber(point.temperature);
        row[csv::kNewSegment] = point.segmentStart ? "1" : "0";
        writeRow(out_, row);
    }

    void finish() override {}
    [[nodiscard]] std::size_t leftOut() const override { return leftOut_; }

private:
    bool putPosition(Row& row, double latitude, double longitude) {
        const auto position = filePosition(latitude, longitude);
        if (!position) {
            ++leftOut_;
            return false;
        }
        row[csv::kLatitude] = fileNumber(position->latitude);
        row[csv::kLongitude] = fileNumber(position->longitude);
        return true;
    }

    void writePlace(std::string_view kind, const WaypointRecord& place,
                    const RouteLinkRecord* link) {
        Row row;
        if (!putPosition(row, place.latitude, place.longitude)) {
            return;
        }
        row[csv::kKind] = kind;
        row[csv::kName] = gpxText(place.name);
        row[csv::kAltitude] = fileNumber(place.altitude);
        row[csv::kTime] = fileTime(place.time);
        row[csv::kComment] = gpxText(place.comment);
        if (place.symbol) {
            const std::string name = symbolName(*place.symbol);
            row[csv::kSymbol] = name.empty() ? std::to_string(*place.symbol) : name;
        }
        if (const auto display = fileDisplay(place)) {
            row[csv::kDisplay] = std::to_string(*display);
        }
        row[csv::kDepth] = fileNumber(place.depth);
        row[csv::kTemperature] = fileNumber(place.temperature);
        row[csv::kProximity] = fileNumber(place.proximity);
        if (link != nullptr) {
            row[csv::kLinkClass] = std::to_string(link->linkClass);
            row[csv::kLinkSubclass] = subclassText(*link);
            row[csv::kLinkName] = gpxText(link->name);
        }
        writeRow(out_, row);
    }

    std::ostream& out_;
    std::size_t leftOut_ = 0;
};

}  // namespace

std::unique_ptr<RecordWriter> makeCsvWriter(std::ostream& out) {
    return std::make_unique<CsvWriter>(out);
}

}  // namespace marlune
