// The columns of CSV files of records. One file holds records of every kind: the first column tells
// which, and a kind leaves the columns empty that it does not know.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace marlune::csv {

enum Column : std::size_t {
    kKind,
    kName,
    kLatitude,
    kLongitude,
    kAltitude,
    kTime,
    kComment,
    kSymbol,
    kDisplay,
    kDepth,
    kTemperature,
    kProximity,
    kNewSegment,
    kNumber,
    kColour,
    kLinkClass,
    kLinkSubclass,
    kLinkName,
    kColumns
};

inline constexpr std::array<std::string_view, kColumns> kNames = {
    "kind",        "name",   "latitude", "longitude",  "altitude",      "time",
    "comment",     "symbol", "display",  "depth",      "temperature",   "proximity",
    "new_segment", "number", "colour",   "link_class", "link_subclass", "link_name"};

inline constexpr std::string_view kWaypoint = "waypoint";
inline constexpr std::string_view kRoute = "route";
inline constexpr std::string_view kRoutePoint = "routepoint";
inline constexpr std::string_view kTrack = "track";
inline constexpr std::string_view kTrackPoint = "trackpoint";

}  // namespace marlune::csv
