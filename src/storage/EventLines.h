// The text lines that events carry for the records of GPX files: coordinates to six decimals,
// altitudes to whole metres (0 when unknown), symbol 18 and display 0 whatever the file says.
#pragma once

#include <string>

#include "marlune/Records.h"

namespace marlune {

std::string eventLine(const WaypointRecord& waypoint, char decimalSeparator);
std::string eventLine(const TrackPointRecord& point, char decimalSeparator);
// Without a name a route is "ROUTE " and its number.
std::string routeEventLine(int number, const std::string& name);
std::string trackEventLine(const std::string& name);

}  // namespace marlune
