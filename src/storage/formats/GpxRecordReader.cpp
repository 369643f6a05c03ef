#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "storage/formats/Readers.h"
#include "storage/formats/RecordValues.h"
#include "storage/formats/XmlReader.h"

namespace marlune {
namespace {

// Texts beyond this are cut: no receiver holds them.
constexpr std::size_t kLongestText = 1U << 16U;

enum class Element {
    other,
    gpx,
    wpt,
    rte,
    rtept,
    trk,
    trkseg,
    trkpt,
    extensions,
    extension,
    field
};

// The fields of elements that are read. Those of extensions are known by their names, whoever's
// they are; upper case is for other programs' own.
enum Field : std::size_t {
    kEle,
    kTime,
    kName,
    kCmt,
    kDesc,
    kSym,
    kNumber,
    kSymbol,
    kDisplay,
    kColour,
    kDepth,
    kTemperature,
    kProximity,
    kLink,
    kFields
};

struct FieldName {
    std::string_view name;
    Field field;
};

constexpr auto kPlainFields = std::to_array<FieldName>({{"ele", kEle},
                                                        {"time", kTime},
                                                        {"name", kName},
                                                        {"cmt", kCmt},
                                                        {"desc", kDesc},
                                                        {"sym", kSym},
                                                        {"number", kNumber}});

constexpr auto kExtensionFields = std::to_array<FieldName>({{"symbol", kSymbol},
                                                            {"display", kDisplay},
                                                            {"colour", kColour},
                                                            {"depth", kDepth},
                                                            {"Depth", kDepth},
                                                            {"temperature", kTemperature},
                                                            {"Temperature", kTemperature},
                                                            {"atemp", kTemperature},
                                                            {"proximity", kProximity},
                                                            {"Proximity", kProximity},
                                                            {"link", kLink}});

template <class Table>
std::optional<Field> fieldNamed(const Table& table, std::string_view name) {
    const auto* const found = std::find_if(
        table.begin(), table.end(), [&](const FieldName& each) { return each.name == name; });
    return found == table.end() ? std::nullopt : std::optional(found->field);
}

// What is known of the point, route or track that is being read.
struct Fields {
    std::array<std::optional<std::string>, kFields> texts;
    std::string latitude;
    std::string longitude;
    std::string linkClass;
    std::string linkSubclass;

    [[nodiscard]] std::string text(Field field) const {
        return texts[field] ? gpxText(*texts[field]) : std::string();
    }
    [[nodiscard]] std::optional<float> metres(Field field) const { return metresOf(text(field)); }
    [[nodiscard]] std::optional<int> whole(Field field, int lowest, int highest) const {
        return wholeNumberOf(text(field), lowest, highest);
    }
    [[nodiscard]] std::optional<double> time() const { return isoSeconds(text(kTime)); }
};

class GpxHandler : public XmlHandler {
public:
    explicit GpxHandler(RecordSink& sink) : sink_(sink) {}

    bool start(std::string_view name, std::size_t depth, const XmlAttributes& attributes) override {
        const Element parent = path_.empty() ? Element::other : path_.back();
        if (depth == 1 && name != "gpx") {
            return false;
        }
        // What stands deeper than any element of GPX is nothing that is read.
        if (depth != path_.size() + 1 || path_.size() == kDeepest) {
            return true;
        }
        const Element element = depth == 1 ? Element::gpx : elementOf(name, parent, attributes);
        path_.push_back(element);
        begin(element, attributes);
        return true;
    }

    void text(std::string_view piece, std::size_t depth) override {
        if (field_ && depth == fieldDepth_ && text_.size() < kLongestText) {
            text_ += piece.substr(0, kLongestText - text_.size());
        }
    }

    void end(std::size_t depth) override {
        if (depth != path_.size()) {
            return;
        }
        const Element element = path_.back();
        path_.pop_back();
        if (field_ && depth == fieldDepth_) {
            auto& value = fields().texts[*field_];
            if (!value) {
                value = text_;
            }
            field_.reset();
        }
        finish(element);
    }

    void tell() const { leftOut_.tell(sink_); }

private:
    static constexpr std::size_t kDeepest = 12;

    Element elementOf(std::string_view name, Element parent, const XmlAttributes& attributes) {
        switch (parent) {
            case Element::gpx:
                return name == "wpt"   ? Element::wpt
                       : name == "rte" ? Element::rte
                       : name == "trk" ? Element::trk
                                       : Element::other;
            case Element::wpt:
            case Element::rtept:
            case Element::trkpt:
                return inPoint(name);
            case Element::rte:
                return name == "rtept" ? Element::rtept : inPoint(name);
            case Element::trk:
                return name == "trkseg" ? Element::trkseg : inPoint(name);
            case Element::trkseg:
                return name == "trkpt" ? Element::trkpt : Element::other;
            case Element::extensions:
            case Element::extension:
                return inExtensions(name, attributes);
            default:
                return Element::other;
        }
    }

    Element inPoint(std::string_view name) {
        if (name == "extensions") {
            return Element::extensions;
        }
        const auto field = fieldNamed(kPlainFields, name);
        return field ? beginField(*field) : Element::other;
    }

    Element inExtensions(std::string_view name, const XmlAttributes& attributes) {
        const auto field = fieldNamed(kExtensionFields, name);
        if (!field || (*field == kLink && attributes.value("class").empty())) {
            return Element::extension;
        }
        if (*field == kLink) {
            fields().linkClass = attributes.value("class");
            fields().linkSubclass = attributes.value("subclass");
        }
        return beginField(*field);
    }

    Element beginField(Field field) {
        field_ = field;
        fieldDepth_ = path_.size() + 1;
        text_.clear();
        return Element::field;
    }

    static bool isPoint(Element element) {
        return element == Element::wpt || element == Element::rtept || element == Element::trkpt;
    }

    // The point's, inside one; else the route's or track's.
    Fields& fields() { return inPoint_ ? point_ : head_; }

    void begin(Element element, const XmlAttributes& attributes) {
        if (isPoint(element)) {
            tellHead();
            inPoint_ = true;
            point_ = {};
            point_.latitude = attributes.value("lat");
            point_.longitude = attributes.value("lon");
        } else if (element == Element::rte || element == Element::trk) {
            head_ = {};
            headKind_ = element;
        } else if (element == Element::trkseg) {
            tellHead();
            first_ = true;
        }
    }

    void finish(Element element) {
        switch (element) {
            case Element::wpt:
                if (const auto waypoint = waypointOf()) {
                    sink_.waypoint(*waypoint);
                }
                break;
            case Element::rtept:
                if (auto waypoint = waypointOf()) {
                    sink_.routePoint({std::move(*waypoint), linkOf()});
                }
                break;
            case Element::trkpt:
                takeTrackPoint();
                break;
            case Element::rte:
            case Element::trk:
                tellHead();
                break;
            default:
                return;
        }
        inPoint_ = false;
    }

    // A route or track is told before its first point.
    void tellHead() {
        if (headKind_ == Element::rte) {
            constexpr int kLast = 65535;
            ++routes_;
            RouteRecord head;
            head.number = head_.whole(kNumber, 0, kLast).value_or(routes_);
            head.name = head_.text(kName);
            sink_.route(head);
        } else if (headKind_ == Element::trk) {
            TrackRecord head;
            head.name = head_.text(kName);
            if (const auto display = head_.whole(kDisplay, 0, 1)) {
                head.display = *display != 0;
            }
            head.colour = head_.whole(kColour, 0, 255);
            sink_.track(head);
        }
        headKind_ = Element::other;
    }

    std::optional<FilePosition> position() {
        const auto latitude = gpxNumber(point_.latitude);
        const auto longitude = gpxNumber(point_.longitude);
        if (!gpxOnEarth(latitude, longitude)) {
            leftOut_.add();
            return std::nullopt;
        }
        return FilePosition{*latitude, *longitude};
    }

    std::optional<WaypointRecord> waypointOf() {
        const auto at = position();
        if (!at) {
            return std::nullopt;
        }
        WaypointRecord waypoint;
        waypoint.name = point_.text(kName);
        waypoint.comment = point_.text(kCmt);
        if (waypoint.comment.empty()) {
            waypoint.comment = point_.text(kDesc);
        }
        waypoint.latitude = at->latitude;
        waypoint.longitude = at->longitude;
        waypoint.altitude = point_.metres(kEle);
        waypoint.depth = point_.metres(kDepth);
        waypoint.temperature = point_.metres(kTemperature);
        waypoint.proximity = point_.metres(kProximity);
        waypoint.time = point_.time();
        waypoint.symbol = symbolOf();
        if (const auto display = point_.whole(kDisplay, 0, 255)) {
            waypoint.display = static_cast<std::uint8_t>(*display);
        }
        return waypoint;
    }

    std::optional<std::int16_t> symbolOf() {
        if (const auto number = point_.whole(kSymbol, INT16_MIN, INT16_MAX)) {
            return static_cast<std::int16_t>(*number);
        }
        const std::string name = point_.text(kSym);
        if (name.empty()) {
            return std::nullopt;
        }
        return symbols_.numberOf(name, sink_);
    }

    [[nodiscard]] std::optional<RouteLinkRecord> linkOf() const {
        const auto linkClass = wholeNumberOf(point_.linkClass, INT16_MIN, INT16_MAX);
        const auto subclass = subclassOf(point_.linkSubclass);
        if (!linkClass || !subclass) {
            return std::nullopt;
        }
        return RouteLinkRecord{static_cast<std::int16_t>(*linkClass), *subclass,
                               point_.text(kLink)};
    }

    void takeTrackPoint() {
        const auto at = position();
        if (!at) {
            return;
        }
        TrackPointRecord point;
        point.latitude = at->latitude;
        point.longitude = at->longitude;
        point.time = point_.time();
        point.altitude = point_.metres(kEle);
        point.depth = point_.metres(kDepth);
        point.temperature = point_.metres(kTemperature);
        point.segmentStart = std::exchange(first_, false);
        sink_.trackPoint(point);
    }

    RecordSink& sink_;
    std::vector<Element> path_;
    Fields head_;
    Element headKind_ = Element::other;  // of a route or track that was not told yet
    Fields point_;
    bool inPoint_ = false;
    bool first_ = false;
    std::optional<Field> field_;  // whose text is being read
    std::size_t fieldDepth_ = 0;
    std::string text_;
    int routes_ = 0;
    LeftOutCount leftOut_;
    SymbolNames symbols_;
};

}  // namespace

void readGpx(ByteSource& source, RecordSink& sink) {
    GpxHandler handler(sink);
    readXml(source, handler, "The root element is not gpx");
    handler.tell();
}

}  // namespace marlune
