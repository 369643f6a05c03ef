// Route sentences:
//
// $PMGNRTE,2,1,c,3,HOLIDAY,HOME,a,BRIDGE,a*hh     with the route's name and an icon per point
// $GPRTE,2,1,c,3,HOME,BRIDGE,MILL,CHURCH*hh       without
//
// sentences of the route; this one's number; "c" for a complete route; route number; points.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "receivers/DeviceData.h"
#include "receivers/nmea/HeardSentence.h"
#include "receivers/nmea/Memory.h"

namespace marlune::receivers::nmea {

struct RouteStyle {
    std::string_view name;          // "GPRTE"
    bool named;                     // whether the route's name and the points' icons are there
    std::size_t pointsPerSentence;  // as many as such receivers put into one
};

inline constexpr RouteStyle kPlainRoutes = {"GPRTE", false, 4};

// The route's sentences, whole; none for a route without points.
std::vector<std::string> routeSentences(const RouteStyle& style, const Route& route);

// What such a sentence says; nothing when it is malformed.
std::optional<RoutePart> readRoute(const RouteStyle& style, const HeardSentence& heard);

}  // namespace marlune::receivers::nmea
