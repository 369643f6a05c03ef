#include <nlohmann/json.hpp>
#include <ostream>

#include "resources/SymbolTable.h"
#include "storage/formats/RecordValues.h"
#include "storage/formats/Writers.h"

namespace marlune {
namespace {

using Json = nlohmann::ordered_json;

// The shortest digits of a single, not those of the double next to it.
double asDouble(float value) {
    return gpxNumber(fileNumber(value)).value_or(0);
}

Json coordinates(const FilePosition& at, std::optional<float> altitude) {
    Json position = {at.longitude, at.latitude};
    if (altitude) {
        position.push_back(asDouble(*altitude));
    }
    return position;
}

void put(Json& properties, const char* name, const std::string& text) {
    if (!text.empty()) {
        properties[name] = text;
    }
}

void put(Json& properties, const char* name, std::optional<float> value) {
    if (value) {
        properties[name] = asDouble(*value);
    }
}

Json propertiesOf(const WaypointRecord& waypoint) {
    Json properties = Json::object();
    put(properties, "name", gpxText(waypoint.name));
    put(properties, "comment", gpxText(waypoint.comment));
    put(properties, "time", fileTime(waypoint.time));
    if (waypoint.symbol) {
        put(properties, "symbol", symbolName(*waypoint.symbol));
        properties["symbolNumber"] = *waypoint.symbol;
    }
    if (const auto display = fileDisplay(waypoint)) {
        properties["display"] = *display;
    }
    put(properties, "depth", waypoint.depth);
    put(properties, "temperature", waypoint.temperature);
    put(properties, "proximity", waypoint.proximity);
    return properties;
}

// One feature a line. A waypoint is a point; a route is a line, its points' other fields standing
// in the property "points"; a track is a line per segment, with the times in "coordTimes".
class GeoJsonWriter : public RecordWriter {
public:
    GeoJsonWriter(std::ostream& out, const FileHead& head) : out_(out) {
        out_ << R"({"type":"FeatureCollection",)";
        if (const std::string source = gpxText(head.source); !source.empty()) {
            out_ << R"("description":)" << textOf(source) << ',';
        }
        if (const std::string time = fileTime(head.time); !time.empty()) {
            out_ << R"("time":)" << textOf(time) << ',';
        }
        out_ << R"("features":[)";
    }

    void waypoint(const WaypointRecord& waypoint) override {
        endLine();
        if (const auto position = place(waypoint.latitude, waypoint.longitude)) {
            write({{"type", "Point"}, {"coordinates", coordinates(*position, waypoint.altitude)}},
                  propertiesOf(waypoint));
        }
    }

    void route(const RouteRecord& head) override {
        endLine();
        begin("route", head.name);
        properties_["number"] = head.number;
        properties_["points"] = Json::array();
        isTrack_ = false;
    }

    void routePoint(const RoutePointRecord& point) override {
        const WaypointRecord& at = point.point;
        const auto position = place(at.latitude, at.longitude);
        if (!position) {
            return;
        }
        if (segments_.empty()) {
            segments_.push_back(Json::array());
        }
        segments_.back().push_back(coordinates(*position, at.altitude));
        Json properties = propertiesOf(at);
        if (point.link) {
            properties["link"] = {{"class", point.link->linkClass},
                                  {"subclass", subclassText(*point.link)},
                                  {"name", gpxText(point.link->name)}};
        }
        properties_["points"].push_back(std::move(properties));
    }

    void track(const TrackRecord& head) override {
        endLine();
        begin("track", head.name);
        if (head.display) {
            properties_["display"] = *head.display;
        }
        if (head.colour) {
            properties_["colour"] = *head.colour;
        }
        isTrack_ = true;
    }

    void trackPoint(const TrackPointRecord& point) override {
        if (!open_) {
            track({});
        }
        const auto position = place(point.latitude, point.longitude);
        if (!position) {
            return;
        }
        if (segments_.empty() || point.segmentStart) {
            segments_.push_back(Json::array());
            times_.push_back(Json::array());
        }
        segments_.back().push_back(coordinates(*position, point.altitude));
        const std::string time = fileTime(point.time);
        times_.back().push_back(time.empty() ? Json() : Json(time));
        timed_ = timed_ || !time.empty();
        addDepth(point);
    }

    void finish() override {
        endLine();
        out_ << "\n]}\n";
    }
    [[nodiscard]] std::size_t leftOut() const override { return leftOut_; }

private:
    static std::string textOf(const Json& value) {
        return value.dump(-1, ' ', false, Json::error_handler_t::replace);
    }

    std::optional<FilePosition> place(double latitude, double longitude) {
        const auto position = filePosition(latitude, longitude);
        leftOut_ += position ? 0 : 1;
        return position;
    }

    void begin(const char* kind, const std::string& name) {
        open_ = true;
        properties_ = Json::object();
        properties_["kind"] = kind;
        put(properties_, "name", gpxText(name));
    }

    void addDepth(const TrackPointRecord& point) {
        const std::pair<const char*, std::optional<float>> values[] = {
            {"depths", point.depth}, {"temperatures", point.temperature}};
        for (const auto& [name, value] : values) {
            if (!value && !properties_.contains(name)) {
                continue;
            }
            // One list for each segment, as for the times, null where a point has none.
            Json& lists = properties_[name];
            for (std::size_t i = lists.size(); i < segments_.size(); ++i) {
                lists.push_back(Json::array());
            }
            for (std::size_t i = 0; i < lists.size(); ++i) {
                const std::size_t wanted =
                    segments_[i].size() - (i + 1 == segments_.size() ? 1 : 0);
                while (lists[i].size() < wanted) {
                    lists[i].push_back(nullptr);
                }
            }
            lists.back().push_back(value ? Json(asDouble(*value)) : Json());
        }
    }

    void endLine() {
        if (!open_) {
            return;
        }
        open_ = false;
        // A line has two positions at least: one that stands alone is there twice.
        for (std::size_t i = 0; i < segments_.size(); ++i) {
            if (segments_[i].size() == 1) {
                segments_[i].push_back(segments_[i].front());
                if (isTrack_) {
                    times_[i].push_back(times_[i].front());
                }
            }
        }
        if (isTrack_ && timed_) {
            properties_["coordTimes"] = std::move(times_);
        }
        Json geometry;
        if (isTrack_ && !segments_.empty()) {
            geometry = {{"type", "MultiLineString"}, {"coordinates", std::move(segments_)}};
        } else if (!segments_.empty()) {
            geometry = {{"type", "LineString"}, {"coordinates", std::move(segments_.front())}};
        }
        write(geometry, properties_);
        segments_ = Json::array();
        times_ = Json::array();
        timed_ = false;
    }

    void write(const Json& geometry, const Json& properties) {
        const Json feature = {
            {"type", "Feature"}, {"geometry", geometry}, {"properties", properties}};
        out_ << (first_ ? "\n" : ",\n") << textOf(feature);
        first_ = false;
    }

    std::ostream& out_;
    bool first_ = true;
    bool open_ = false;  // a route or track, whose points are gathered
    bool isTrack_ = false;
    bool timed_ = false;
    Json properties_;
    Json segments_ = Json::array();
    Json times_ = Json::array();
    std::size_t leftOut_ = 0;
};

}  // namespace

std::unique_ptr<RecordWriter> makeGeoJsonWriter(std::ostream& out, const FileHead& head) {
    return std::make_unique<GeoJsonWriter>(out, head);
}

}  // namespace marlune
