#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "garmin/values/LineFields.h"
#include "resources/SymbolTable.h"
#include "storage/formats/Readers.h"
#include "storage/formats/RecordValues.h"

namespace marlune {
namespace {

constexpr std::size_t kLongestLine = 1U << 20U;

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

// The lines say 0 for an unknown altitude.
std::optional<float> altitudeOf(std::string_view field) {
    const auto metres = metresOf(field);
    return metres && *metres != 0 ? metres : std::nullopt;
}

// Several fields as the one text that they were.
std::string joined(const std::vector<std::string_view>& fields, std::size_t from, std::size_t to) {
    const char* end = fields[to - 1].data() + fields[to - 1].size();
    return gpxText({fields[from].data(), static_cast<std::size_t>(end - fields[from].data())});
}

// Nothing for a line of too few fields, or without a position on earth. A receiver's texts may hold
// ";": with more fields than a waypoint has, the first two numbers in a row are its position and
// the last three fields its numbers.
std::optional<WaypointRecord> waypointOf(std::string_view line) {
    constexpr std::size_t kFieldsOfLine = 8;
    const auto fields = splitText(line, ';');
    if (fields.size() < kFieldsOfLine) {
        return std::nullopt;
    }
    std::size_t latitude = 2;
    const std::size_t last = latitude + fields.size() - kFieldsOfLine;
    while (latitude < last && !(gpxNumber(fields[latitude]) && gpxNumber(fields[latitude + 1]))) {
        ++latitude;
    }
    const auto north = gpxNumber(fields[latitude]);
    const auto east = gpxNumber(fields[latitude + 1]);
    if (!gpxOnEarth(north, east)) {
        return std::nullopt;
    }
    const std::size_t altitude = fields.size() - 3;
    WaypointRecord waypoint;
    waypoint.name = joined(fields, 1, latitude);
    waypoint.comment = joined(fields, latitude + 2, altitude);
    waypoint.latitude = *north;
    waypoint.longitude = *east;
    waypoint.altitude = altitudeOf(fields[altitude]);
    // 18 and 0 are what the lines say of receivers that know neither.
    const auto symbol = wholeNumberOf(fields[altitude + 1], INT16_MIN, INT16_MAX);
    if (symbol && *symbol != kDefaultSymbol) {
        waypoint.symbol = static_cast<std::int16_t>(*symbol);
    }
    const auto display = wholeNumberOf(fields[altitude + 2], 1, UINT8_MAX);
    if (display) {
        waypoint.display = static_cast<std::uint8_t>(*display);
    }
    return waypoint;
}

}  // namespace

bool LineTaker::take(std::string_view line) {
    if (line.starts_with("W;")) {
        return takeWaypoint(line);
    }
    if (line.starts_with("T;")) {
        return takeTrackPoint(line);
    }
    if (line.starts_with("R;")) {
        takeRoute(line);
    } else if (line.starts_with("N;")) {
        finish();
        inRoute_ = false;
        TrackRecord track;
        track.name = gpxText(restAfter(line, 1));
        sink_.track(track);
    } else if (line.starts_with("L;")) {
        takeLink(line);
    }
    return true;
}

void LineTaker::finish() {
    if (waiting_) {
        sink_.routePoint(*std::exchange(waiting_, std::nullopt));
    }
}

bool LineTaker::takeWaypoint(std::string_view line) {
    finish();
    auto waypoint = waypointOf(line);
    if (waypoint && inRoute_) {
        waiting_ = RoutePointRecord{std::move(*waypoint), std::nullopt};
    } else if (waypoint) {
        sink_.waypoint(*waypoint);
    }
    return waypoint.has_value();
}

void LineTaker::takeRoute(std::string_view line) {
    finish();
    inRoute_ = true;
    RouteRecord route;
    ++routes_;
    route.number = wholeNumberOf(splitText(line, ';').at(1), 0, UINT16_MAX).value_or(routes_);
    route.name = gpxText(restAfter(line, 2));
    sink_.route(route);
}

// Of the link itself the lines know only the name.
void LineTaker::takeLink(std::string_view line) {
    constexpr std::string_view kLink = "L;RteLink ";
    if (waiting_ && line.starts_with(kLink)) {
        RouteLinkRecord link;
        link.name = gpxText(line.substr(kLink.size()));
        waiting_->link = link;
    }
    finish();
}

bool LineTaker::takeTrackPoint(std::string_view line) {
    finish();
    inRoute_ = false;
    constexpr std::size_t kFieldsOfLine = 6;
    const auto fields = splitText(line, ';');
    const auto north = fields.size() < kFieldsOfLine ? std::nullopt : gpxNumber(fields[1]);
    const auto east = north ? gpxNumber(fields[2]) : std::nullopt;
    if (!gpxOnEarth(north, east)) {
        return false;
    }
    TrackPointRecord point;
    point.latitude = *north;
    point.longitude = *east;
    point.time = secondsOfDays(gpxNumber(fields[3]).value_or(0));
    point.altitude = altitudeOf(fields[4]);
    point.segmentStart = gpxNumber(fields[5]).value_or(0) != 0;
    sink_.trackPoint(point);
    return true;
}

void readLines(ByteSource& source, RecordSink& sink) {
    LineTaker taker(sink);
    LeftOutCount leftOut;
    std::vector<char> block(1U << 16U);
    std::string line;
    std::size_t offset = 0;
    const auto takeLine = [&] {
        constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
        std::string_view text = line;
        text.remove_prefix(text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0);
        text.remove_suffix(text.ends_with('\r') ? 1 : 0);
        if (!taker.take(text)) {
            leftOut.add();
        }
        line.clear();
    };
    for (std::string_view bytes = source.read(block); !bytes.empty(); bytes = source.read(block)) {
        for (std::string_view rest = bytes; !rest.empty();) {
            const std::size_t end = rest.find('\n');
            line += rest.substr(0, end);
            if (line.size() > kLongestLine) {
                throw FileParseError("the line is too long", source.placeOf(offset));
            }
            if (end == std::string_view::npos) {
                break;
            }
            takeLine();
            rest.remove_prefix(end + 1);
        }
        offset += bytes.size();
    }
    takeLine();
    taker.finish();
    leftOut.tell(sink);
}

}  // namespace marlune
