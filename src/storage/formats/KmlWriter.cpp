#include <vector>

#include "resources/SymbolTable.h"
#include "storage/formats/RecordValues.h"
#include "storage/formats/Writers.h"
#include "storage/formats/XmlWriter.h"

namespace marlune {
namespace {

// A placemark per waypoint, route and track. Tracks whose points all have a time are gx:MultiTrack,
// which keeps it; others are lines. A segment is written when it ends.
class KmlWriter : public RecordWriter {
public:
    KmlWriter(std::ostream& out, const FileHead& head) : xml_(out) {
        xml_.open("kml");
        xml_.attribute("xmlns", "http://www.opengis.net/kml/2.2");
        xml_.attribute("xmlns:gx", "http://www.google.com/kml/ext/2.2");
        xml_.open("Document");
        xml_.element("name", "Marlune");
        xml_.element("description", gpxText(head.source));
    }

    void waypoint(const WaypointRecord& waypoint) override {
        endPlacemark();
        const auto position = filePosition(waypoint.latitude, waypoint.longitude);
        if (!position) {
            ++leftOut_;
            return;
        }
        xml_.open("Placemark");
        xml_.element("name", gpxText(waypoint.name));
        xml_.element("description", gpxText(waypoint.comment));
        if (const std::string time = fileTime(waypoint.time); !time.empty()) {
            xml_.open("TimeStamp");
            xml_.element("when", time);
            xml_.close();
        }
        writeData(waypoint);
        xml_.open("Point");
        writeAltitudeMode(waypoint.altitude.has_value());
        xml_.element("coordinates", tuple(*position, waypoint.altitude, ","));
        xml_.closeTo(kInDocument);
    }

    void route(const RouteRecord& head) override {
        endPlacemark();
        begin(head.name, false);
        number_ = head.number;
    }

    void routePoint(const RoutePointRecord& point) override {
        const WaypointRecord& place = point.point;
        add({place.latitude, place.longitude, std::nullopt, place.altitude, {}, {}, false});
    }

    void track(const TrackRecord& head) override {
        endPlacemark();
        begin(head.name, true);
    }

    void trackPoint(const TrackPointRecord& point) override {
        if (!open_) {
            begin({}, true);
        }
        add(point);
    }

    void finish() override {
        endPlacemark();
        xml_.closeTo(0);
    }
    [[nodiscard]] std::size_t leftOut() const override { return leftOut_; }

private:
    static constexpr std::size_t kInDocument = 2;

    struct Point {
        FilePosition position;
        std::optional<float> altitude;
        std::string time;
        bool first = false;
    };

    static std::string tuple(const FilePosition& at, std::optional<float> altitude,
                             const char* separator) {
        const std::string metres = fileNumber(altitude);
        return fileNumber(at.longitude) + separator + fileNumber(at.latitude) +
               (metres.empty() ? "" : separator + metres);
    }

    void begin(const std::string& name, bool isTrack) {
        open_ = true;
        isTrack_ = isTrack;
        name_ = gpxText(name);
    }

    void add(const TrackPointRecord& point) {
        const auto position = filePosition(point.latitude, point.longitude);
        if (!position) {
            ++leftOut_;
            return;
        }
        points_.push_back({*position, point.altitude, fileTime(point.time),
                           points_.empty() || point.segmentStart});
    }

    void writeData(const WaypointRecord& waypoint) {
        const std::string symbol = waypoint.symbol ? symbolName(*waypoint.symbol) : std::string();
        const std::pair<const char*, std::string> values[] = {
            {"symbol",
             symbol.empty() && waypoint.symbol ? std::to_string(*waypoint.symbol) : symbol},
            {"depth", fileNumber(waypoint.depth)},
            {"temperature", fileNumber(waypoint.temperature)},
            {"proximity", fileNumber(waypoint.proximity)},
        };
        const std::size_t depth = xml_.depth();
        for (const auto& [name, value] : values) {
            if (value.empty()) {
                continue;
            }
            if (xml_.depth() == depth) {
                xml_.open("ExtendedData");
            }
            xml_.open("Data");
            xml_.attribute("name", name);
            xml_.element("value", value);
            xml_.close();
        }
        xml_.closeTo(depth);
    }

    void writeAltitudeMode(bool absolute) {
        if (absolute) {
            xml_.element("altitudeMode", "absolute");
        }
    }

    void endPlacemark() {
        if (!open_) {
            return;
        }
        open_ = false;
        xml_.open("Placemark");
        xml_.element("name", name_);
        if (!isTrack_) {
            xml_.element("description", "Route " + std::to_string(number_));
        }
        bool timed = isTrack_ && !points_.empty();
        for (const Point& point : points_) {
            timed = timed && !point.time.empty();
        }
        if (timed || !points_.empty()) {
            xml_.open(timed ? "gx:MultiTrack" : "MultiGeometry");
            for (std::size_t from = 0; from < points_.size();) {
                std::size_t to = from + 1;
                while (to < points_.size() && !points_[to].first) {
                    ++to;
                }
                writeSegment(from, to, timed);
                from = to;
            }
        }
        xml_.closeTo(kInDocument);
        points_.clear();
    }

    void writeSegment(std::size_t from, std::size_t to, bool timed) {
        bool high = true;
        for (std::size_t i = from; i < to; ++i) {
            high = high && points_[i].altitude.has_value();
        }
        // A line has two points at least.
        const char* shape = timed ? "gx:Track" : to - from == 1 ? "Point" : "LineString";
        xml_.open(shape);
        writeAltitudeMode(high);
        if (timed) {
            for (std::size_t i = from; i < to; ++i) {
                xml_.element("when", points_[i].time);
            }
            for (std::size_t i = from; i < to; ++i) {
                xml_.element("gx:coord",
                             tuple(points_[i].position, points_[i].altitude.value_or(0.0F), " "));
            }
        } else {
            std::string text;
            for (std::size_t i = from; i < to; ++i) {
                text +=
                    (i == from ? "" : " ") + tuple(points_[i].position, points_[i].altitude, ",");
            }
            xml_.element("coordinates", text);
        }
        xml_.close();
    }

    XmlWriter xml_;
    bool open_ = false;  // a route or track, whose points are gathered
    bool isTrack_ = false;
    int number_ = 0;
    std::string name_;
    std::vector<Point> points_;
    std::size_t leftOut_ = 0;
};

}  // namespace

std::unique_ptr<RecordWriter> makeKmlWriter(std::ostream& out, const FileHead& head) {
    return std::make_unique<KmlWriter>(out, head);
}

}  // namespace marlune
