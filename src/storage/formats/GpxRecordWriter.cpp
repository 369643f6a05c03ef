#include "resources/SymbolTable.h"
#include "storage/formats/RecordValues.h"
#include "storage/formats/Writers.h"
#include "storage/formats/XmlWriter.h"

namespace marlune {
namespace {

// Elements in the order that the schema of GPX 1.1 wants.
class GpxRecordWriter : public RecordWriter {
public:
    GpxRecordWriter(std::ostream& out, const FileHead& head) : xml_(out) {
        xml_.open("gpx");
        xml_.attribute("version", "1.1");
        xml_.attribute("creator", "Marlune");
        xml_.attribute("xmlns", "http://www.topografix.com/GPX/1/1");
        xml_.attribute("xmlns:marlune", kGpxExtensions);
        writeHead(head);
    }

    void waypoint(const WaypointRecord& waypoint) override {
        xml_.closeTo(kInFile);
        inTrack_ = false;
        writePoint("wpt", waypoint, nullptr);
    }

    void route(const RouteRecord& head) override {
        xml_.closeTo(kInFile);
        inTrack_ = false;
        xml_.open("rte");
        xml_.element("name", gpxText(head.name));
        if (head.number >= 0) {
            xml_.element("number", std::to_string(head.number));
        }
    }

    void routePoint(const RoutePointRecord& point) override {
        writePoint("rtept", point.point, point.link ? &*point.link : nullptr);
    }

    void track(const TrackRecord& head) override {
        xml_.closeTo(kInFile);
        inTrack_ = true;
        xml_.open("trk");
        xml_.element("name", gpxText(head.name));
        if (head.display || head.colour) {
            xml_.open("extensions");
            if (head.display) {
                xml_.element("marlune:display", *head.display ? "1" : "0");
            }
            if (head.colour) {
                xml_.element("marlune:colour", std::to_string(*head.colour));
            }
            xml_.close();
        }
    }

    void trackPoint(const TrackPointRecord& point) override {
        if (!inTrack_) {
            track({});
        }
        if (!openPoint("trkpt", point.latitude, point.longitude, [&] {
                if (point.segmentStart || xml_.depth() < kInSegment) {
                    xml_.closeTo(kInTrack);
                    xml_.open("trkseg");
                }
            })) {
            return;
        }
        xml_.element("ele", fileNumber(point.altitude));
        xml_.element("time", fileTime(point.time));
        if (point.depth || point.temperature) {
            xml_.open("extensions");
            writeDepth(point.depth, point.temperature);
            xml_.close();
        }
        xml_.close();
    }

    void finish() override { xml_.closeTo(0); }
    [[nodiscard]] std::size_t leftOut() const override { return leftOut_; }

private:
    static constexpr std::size_t kInFile = 1;
    static constexpr std::size_t kInTrack = 2;
    static constexpr std::size_t kInSegment = 3;

    void writeHead(const FileHead& head) {
        const std::string source = gpxText(head.source);
        if (source.empty() && !head.time && !head.bounds) {
            return;
        }
        xml_.open("metadata");
        xml_.element("desc", source);
        xml_.element("time", fileTime(head.time));
        if (head.bounds) {
            xml_.open("bounds");
            xml_.attribute("minlat", fileNumber(head.bounds->south));
            xml_.attribute("minlon", fileNumber(head.bounds->west));
            xml_.attribute("maxlat", fileNumber(head.bounds->north));
            xml_.attribute("maxlon", fileNumber(head.bounds->east));
            xml_.close();
        }
        xml_.close();
    }

    template <class Prepare>
    bool openPoint(const char* name, double latitude, double longitude, Prepare&& prepare) {
        const auto position = filePosition(latitude, longitude);
        if (!position) {
            ++leftOut_;
            return false;
        }
        prepare();
        xml_.open(name);
        xml_.attribute("lat", fileNumber(position->latitude));
        xml_.attribute("lon", fileNumber(position->longitude));
        return true;
    }

    void writePoint(const char* name, const WaypointRecord& point, const RouteLinkRecord* link) {
        if (!openPoint(name, point.latitude, point.longitude, [] {})) {
            return;
        }
        xml_.element("ele", fileNumber(point.altitude));
        xml_.element("time", fileTime(point.time));
        xml_.element("name", gpxText(point.name));
        xml_.element("cmt", gpxText(point.comment));
        const std::string symbol = point.symbol ? symbolName(*point.symbol) : std::string();
        xml_.element("sym", symbol);
        writeExtensions(point, point.symbol && symbol.empty(), link);
        xml_.close();
    }

    void writeExtensions(const WaypointRecord& point, bool namelessSymbol,
                         const RouteLinkRecord* link) {
        const auto display = fileDisplay(point);
        if (!namelessSymbol && !display && !point.depth && !point.temperature && !point.proximity &&
            link == nullptr) {
            return;
        }
        xml_.open("extensions");
        if (namelessSymbol) {
            xml_.element("marlune:symbol", std::to_string(*point.symbol));
        }
        if (display) {
            xml_.element("marlune:display", std::to_string(*display));
        }
        writeDepth(point.depth, point.temperature);
        xml_.element("marlune:proximity", fileNumber(point.proximity));
        if (link != nullptr) {
            xml_.open("marlune:link");
            xml_.attribute("class", std::to_string(link->linkClass));
            xml_.attribute("subclass", subclassText(*link));
            xml_.text(gpxText(link->name));
            xml_.close();
        }
        xml_.close();
    }

    void writeDepth(std::optional<float> depth, std::optional<float> temperature) {
        xml_.element("marlune:depth", fileNumber(depth));
        xml_.element("marlune:temperature", fileNumber(temperature));
    }

    XmlWriter xml_;
    bool inTrack_ = false;
    std::size_t leftOut_ = 0;
};

}  // namespace

std::unique_ptr<RecordWriter> makeGpxWriter(std::ostream& out, const FileHead& head) {
    return std::make_unique<GpxRecordWriter>(out, head);
}

}  // namespace marlune
