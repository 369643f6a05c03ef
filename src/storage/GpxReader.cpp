#include "marlune/Gpx.h"
#include "storage/EventLines.h"

namespace marlune {
namespace {

// Writes the records of one kind as the lines that events carry.
class LineMaker : public RecordSink {
public:
    LineMaker(GpxKind kind, char separator, int& routes, std::vector<std::string>& lines)
        : kind_(kind), separator_(separator), routes_(routes), lines_(lines) {}

    void waypoint(const WaypointRecord& waypoint) override {
        if (kind_ == GpxKind::waypoints) {
            lines_.push_back(eventLine(waypoint, separator_));
        }
    }
    void route(const RouteRecord& head) override {
        if (kind_ == GpxKind::routes) {
            lines_.push_back(routeEventLine(++routes_, head.name));
        }
    }
    void routePoint(const RoutePointRecord& point) override {
        if (kind_ == GpxKind::routes) {
            lines_.push_back(eventLine(point.point, separator_));
        }
    }
    void track(const TrackRecord& head) override {
        if (kind_ == GpxKind::tracks) {
            lines_.push_back(trackEventLine(head.name));
        }
    }
    void trackPoint(const TrackPointRecord& point) override {
        if (kind_ == GpxKind::tracks) {
            lines_.push_back(eventLine(point, separator_));
        }
    }

private:
    GpxKind kind_;
    char separator_;
    int& routes_;
    std::vector<std::string>& lines_;
};

}  // namespace

std::vector<std::string> GpxReader::readFile(const std::string& path) {
    std::vector<std::string> lines;
    LineMaker maker(kind_, decimalSeparator_, routes_, lines);
    readRecords(path, FileFormat::gpx, maker);
    return lines;
}

std::vector<std::string> GpxReader::readText(std::string_view content) {
    std::vector<std::string> lines;
    LineMaker maker(kind_, decimalSeparator_, routes_, lines);
    readRecordText(content, FileFormat::gpx, maker);
    return lines;
}

}  // namespace marlune
