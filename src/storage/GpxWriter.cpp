#include <cmath>
#include <filesystem>
#include <fstream>
#include <pugixml.hpp>
#include <system_error>

#include "base/FilePath.h"
#include "base/SystemError.h"
#include "garmin/values/LineFields.h"
#include "garmin/values/NumberText.h"
#include "host/Services.h"
#include "marlune/Gpx.h"
#include "storage/GpxValues.h"

namespace marlune {
namespace {

namespace fs = std::filesystem;

// What stands after the nth ";" of the line.
std::string_view restAfter(std::string_view line, int semicolons) {
    for (; semicolons > 0; --semicolons) {
        const std::size_t at = line.find(';');
        if (at == std::string_view::npos) {
            return {};
        }
        line.remove_prefix(at + 1);
    }
    return line;
}

struct Position {
    std::string latitude;
    std::string longitude;
};

// The schema's ranges; it counts longitudes up to, not including, 180.
std::optional<Position> positionOf(std::string_view latitude, std::string_view longitude) {
    const auto lat = gpxNumber(latitude);
    const auto lon = gpxNumber(longitude);
    if (!gpxOnEarth(lat, lon)) {
        return std::nullopt;
    }
    return Position{numberText(*lat, '.'), numberText(*lon == 180 ? -180 : *lon, '.')};
}

struct WaypointFields {
    std::string name;
    std::string comment;
    std::string_view latitude;
    std::string_view longitude;
    std::string_view altitude;
};

// A receiver's texts may hold ";": with more fields than a waypoint has, the first two numbers in a
// row are its position and the last three fields its numbers.
std::optional<WaypointFields> waypointFields(std::string_view line) {
    constexpr std::size_t kFields = 8;
    const auto fields = splitText(line, ';');
    if (fields.size() < kFields) {
        return std::nullopt;
    }
    std::size_t latitude = 2;
    const std::size_t last = latitude + fields.size() - kFields;
    while (latitude < last && !(gpxNumber(fields[latitude]) && gpxNumber(fields[latitude + 1]))) {
        ++latitude;
    }
    const std::size_t altitude = fields.size() - 3;
    const auto join = [&](std::size_t from, std::size_t to) {
        const char* end = fields[to - 1].data() + fields[to - 1].size();
        return gpxText({fields[from].data(), static_cast<std::size_t>(end - fields[from].data())});
    };
    return WaypointFields{join(1, latitude), join(latitude + 2, altitude), fields[latitude],
                          fields[latitude + 1], fields[altitude]};
}

void addText(pugi::xml_node parent, const char* name, const std::string& text) {
    if (!text.empty()) {
        parent.append_child(name).text().set(text.c_str());
    }
}

void addElevation(pugi::xml_node parent, std::string_view altitude) {
    const auto metres = gpxNumber(altitude);
    // The lines say 0 for an unknown altitude.
    if (metres && *metres != 0) {
        addText(parent, "ele", numberText(*metres, '.'));
    }
}

void setPosition(pugi::xml_node point, const Position& position) {
    point.append_attribute("lat") = position.latitude.c_str();
    point.append_attribute("lon") = position.longitude.c_str();
}

void writeFile(const pugi::xml_document& document, const fs::path& path) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (out) {
        document.save(out, "  ", pugi::format_default, pugi::encoding_utf8);
        out.close();
    }
    if (!out) {
        throw std::system_error(lastSystemError(), std::system_category());
    }
}

// The file that a chain of links leads to, whether it exists or not.
fs::path followLinks(fs::path path) {
    constexpr int kLongestChain = 40;
    for (int i = 0; i < kLongestChain && fs::is_symlink(path); ++i) {
        path = path.parent_path() / fs::read_symlink(path);
    }
    return path;
}

// A name in the same folder that nothing has, and that no reader takes for a GPX file.
fs::path nameBeside(const fs::path& target) {
    fs::path plain = target.parent_path() / ".";
    plain += target.filename();
    plain += ".part";
    fs::path name = plain;
    std::error_code ignored;
    for (int i = 1; fs::exists(fs::symlink_status(name, ignored)); ++i) {
        name = plain;
        name += std::to_string(i);
    }
    return name;
}

}  // namespace

struct GpxWriter::Impl {
    Impl() : root(document.append_child("gpx")) {
        root.append_attribute("version") = "1.1";
        root.append_attribute("creator") = "Marlune";
        root.append_attribute("xmlns") = "http://www.topografix.com/GPX/1/1";
        auto declaration = document.prepend_child(pugi::node_declaration);
        declaration.append_attribute("version") = "1.0";
        declaration.append_attribute("encoding") = "UTF-8";
    }

    // The schema wants waypoints before routes before tracks, whatever the order of the lines.
    pugi::xml_node insert(const char* name, pugi::xml_node after) {
        return after ? root.insert_child_after(name, after) : root.prepend_child(name);
    }

    void addWaypoint(std::string_view line) {
        const auto fields = waypointFields(line);
        const auto position =
            fields ? positionOf(fields->latitude, fields->longitude) : std::nullopt;
        if (!position) {
            ++leftOut;
            return;
        }
        pugi::xml_node point;
        if (route) {
            point = route.append_child("rtept");
        } else {
            point = lastWaypoint = insert("wpt", lastWaypoint);
        }
        setPosition(point, *position);
        addElevation(point, fields->altitude);
        addText(point, "name", fields->name);
        addText(point, "cmt", fields->comment);
    }

    void beginRoute(std::string_view line) {
        route = lastRoute = insert("rte", lastRoute ? lastRoute : lastWaypoint);
        track = segment = pugi::xml_node();
        addText(route, "name", gpxText(restAfter(line, 2)));
        const auto number = gpxNumber(splitText(line, ';').at(1));
        if (number && *number >= 0 && *number == std::floor(*number)) {
            addText(route, "number", numberText(*number, '.'));
        }
    }

    void beginTrack(std::string_view name) {
        track = root.append_child("trk");
        route = segment = pugi::xml_node();
        addText(track, "name", gpxText(name));
    }

    void addTrackPoint(std::string_view line) {
        constexpr std::size_t kFields = 6;
        const auto fields = splitText(line, ';');
        const auto position =
            fields.size() < kFields ? std::nullopt : positionOf(fields[1], fields[2]);
        if (!position) {
            ++leftOut;
            return;
        }
        if (!track) {
            beginTrack({});
        }
        if (!segment || gpxNumber(fields[5]).value_or(0) != 0) {
            segment = track.append_child("trkseg");
        }
        auto point = segment.append_child("trkpt");
        setPosition(point, *position);
        addElevation(point, fields[4]);
        addText(point, "time", gpxTime(gpxNumber(fields[3]).value_or(0)));
    }

    pugi::xml_document document;
    pugi::xml_node root;
    pugi::xml_node lastWaypoint;
    pugi::xml_node lastRoute;
    pugi::xml_node route;  // the one that "W;" lines go to, if any
    pugi::xml_node track;  // the one that "T;" lines go to, if any
    pugi::xml_node segment;
    std::size_t leftOut = 0;
};

GpxWriter::GpxWriter() : impl_(std::make_unique<Impl>()) {}
GpxWriter::~GpxWriter() = default;

void GpxWriter::addLine(std::string_view line) {
    if (line.starts_with("W;")) {
        impl_->addWaypoint(line);
    } else if (line.starts_with("T;")) {
        impl_->addTrackPoint(line);
    } else if (line.starts_with("R;")) {
        impl_->beginRoute(line);
    } else if (line.starts_with("N;")) {
        impl_->beginTrack(restAfter(line, 1));
    }
}

std::size_t GpxWriter::leftOut() const {
    return impl_->leftOut;
}

void GpxWriter::save(const std::string& path) const {
    // Asked of the name as it stands: the links of /dev/stdout lead to no name that could be
    // opened.
    const auto type = fs::status(filePath(path)).type();
    if (type != fs::file_type::not_found && type != fs::file_type::regular) {
        writeFile(impl_->document, filePath(path));
        return;
    }
    const fs::path target = followLinks(filePath(path));
    const fs::path beside = nameBeside(target);
    try {
        writeFile(impl_->document, beside);
        fs::rename(beside, target);
    } catch (...) {
        std::error_code ignored;
        fs::remove(beside, ignored);
        throw;
    }
}

}  // namespace marlune
