// Route sentences, which the families write alike:
//
// $PMGNRTE,2,1,c,3,HOLIDAY,HOME,a,BRIDGE,a*hh     Magellan
// $GPRTE,2,1,c,3,HOME,BRIDGE,MILL,CHURCH*hh       MLR
//
// sentences of the route; this one's number; "c"; route number; route name (Magellan); points, each
// followed by its icon (Magellan).
//
// Sentences are wire text (Sentence.h).
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "garmin/records/Route.h"
#include "garmin/records/Waypoint.h"
#include "nmea/RouteAssembly.h"

namespace marlune {

// What a family's route sentences look like.
struct RouteDialect {
    const char* identifier;
    bool hasName;
    bool hasIcons;
    std::size_t pointsPerSentence;
    std::size_t longestPointName;
};

// Waypoints by their names.
using KnownPoints = std::map<std::string, Waypoint>;

// What a route sentence says. Raises overflow for numbers that do not fit. Some receivers leave the
// route's name out: then its place names a known point, and the place of the first point, with an
// icon, names none.
RoutePhrase readRouteSentence(const RouteDialect& dialect, std::string_view sentence,
                              const KnownPoints& known = {});

// A route's sentences in order, ready to be sent; none for a route without points.
std::vector<std::string> routeSentences(const RouteDialect& dialect, const Route& route);

// Magellan.
RoutePhrase RouteMGN(std::string_view sentence, const KnownPoints& known = {});
std::vector<std::string> PhraseRouteMGN(const Route& route);

// MLR. Point names are cut to six characters, as those of the points themselves are.
RoutePhrase RouteMLR(std::string_view sentence);
std::vector<std::string> PhraseRouteMLR(const Route& route);

}  // namespace marlune
