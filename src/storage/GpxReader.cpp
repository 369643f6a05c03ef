#include <algorithm>
#include <cmath>

#include "garmin/values/NumberText.h"
#include "marlune/Gpx.h"
#include "storage/GpxValues.h"
#include "storage/WholeFile.h"
#include "storage/XmlText.h"

namespace marlune {
namespace {

// The children of that name, namespaces aside, in document order.
template <class Visit>
void forEachChild(const pugi::xml_node& parent, std::string_view name, Visit&& visit) {
    for (const pugi::xml_node& child : parent.children()) {
        if (localName(child) == name) {
            visit(child);
        }
    }
}

std::string childText(const pugi::xml_node& parent, std::string_view name) {
    for (const pugi::xml_node& child : parent.children()) {
        if (localName(child) == name) {
            return textIn(child);
        }
    }
    return {};
}

// A text as a field of a line: the separator of fields cannot stand in it.
std::string fieldOf(const pugi::xml_node& parent, std::string_view name) {
    std::string text = childText(parent, name);
    std::replace(text.begin(), text.end(), ';', ',');
    return text;
}

// Writes the elements of one document as lines.
class LineMaker {
public:
    LineMaker(char separator, std::vector<std::string>& lines)
        : separator_(separator), lines_(lines) {}

    void addWaypoint(const pugi::xml_node& point) {
        const std::string position = positionOf(point);
        if (position.empty()) {
            return;
        }
        std::string comment = fieldOf(point, "cmt");
        if (comment.empty()) {
            comment = fieldOf(point, "desc");
        }
        lines_.push_back("W;" + fieldOf(point, "name") + ";" + position + ";" + comment + ";" +
                         altitudeOf(point) + ";18;0");
    }

    void addRoute(const pugi::xml_node& route, int number) {
        std::string name = fieldOf(route, "name");
        if (name.empty()) {
            name = "ROUTE " + std::to_string(number);
        }
        lines_.push_back("R;" + std::to_string(number) + ";" + name);
        forEachChild(route, "rtept", [&](const pugi::xml_node& point) { addWaypoint(point); });
    }

    void addTrack(const pugi::xml_node& track) {
        lines_.push_back("N;" + fieldOf(track, "name"));
        forEachChild(track, "trkseg", [&](const pugi::xml_node& segment) {
            bool first = true;
            forEachChild(segment, "trkpt", [&](const pugi::xml_node& point) {
                first = !addTrackPoint(point, first) && first;
            });
        });
    }

private:
    bool addTrackPoint(const pugi::xml_node& point, bool first) {
        const std::string position = positionOf(point);
        if (position.empty()) {
            return false;
        }
        lines_.push_back("T;" + position + ";" +
                         numberText(gpxDays(childText(point, "time")), separator_) + ";" +
                         altitudeOf(point) + (first ? ";-1" : ";0"));
        return true;
    }

    // "lat;lon", empty for a point that is nowhere on earth.
    [[nodiscard]] std::string positionOf(const pugi::xml_node& point) const {
        const auto lat = gpxNumber(point.attribute("lat").value());
        const auto lon = gpxNumber(point.attribute("lon").value());
        if (!gpxOnEarth(lat, lon)) {
            return {};
        }
        return numberText(roundHalfEven(*lat, 6), separator_) + ";" +
               numberText(roundHalfEven(*lon, 6), separator_);
    }

    // 0 stands for an unknown altitude, and for one that is no place's.
    [[nodiscard]] std::string altitudeOf(const pugi::xml_node& point) const {
        constexpr double kFarthest = 1e9;
        const double metres = gpxNumber(childText(point, "ele")).value_or(0);
        return std::abs(metres) > kFarthest ? "0"
                                            : numberText(roundHalfEven(metres, 0), separator_);
    }

    char separator_;
    std::vector<std::string>& lines_;
};

}  // namespace

GpxParseError::GpxParseError(const std::string& reason, Place place)
    : std::runtime_error(reason), place_(std::make_shared<const Place>(std::move(place))) {}

std::vector<std::string> GpxReader::readFile(const std::string& path) {
    return readText(readWholeFile(path));
}

std::vector<std::string> GpxReader::readText(std::string_view content) {
    pugi::xml_document document;
    loadXml(document, content);
    const pugi::xml_node root = document.document_element();
    if (localName(root) != "gpx") {
        throw GpxParseError("The root element is not gpx", placeAt(content, 0));
    }
    std::vector<std::string> lines;
    LineMaker maker(decimalSeparator_, lines);
    switch (kind_) {
        case GpxKind::waypoints:
            forEachChild(root, "wpt", [&](const auto& point) { maker.addWaypoint(point); });
            break;
        case GpxKind::routes:
            forEachChild(root, "rte", [&](const auto& route) { maker.addRoute(route, ++routes_); });
            break;
        case GpxKind::tracks:
            forEachChild(root, "trk", [&](const auto& track) { maker.addTrack(track); });
            break;
    }
    return lines;
}

}  // namespace marlune
