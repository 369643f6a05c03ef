// Waypoint and proximity records as a Garmin unit keeps them. docs/receivers.md has the layouts.
//
// All types hold a position in semicircles; what else they hold differs, and what a type has no
// room for is lost on the way through it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "receivers/DeviceData.h"

namespace marlune::receivers::garmin {

// The record of a waypoint in a type of D100 to D110, D150 to D152, D154, D155. Distance is the
// alarm distance in metres of those types that have room for it; 0 for none.
std::vector<std::uint8_t> placeRecord(const std::string& type, const Place& place,
                                      double distance = 0);

// Reads such a record. Throws std::out_of_range when it is too short.
Place placeOf(const std::string& type, std::span<const std::uint8_t> record);

// The same for proximity waypoints: D400, D403, D450, or any waypoint type; those without room for
// a distance lose it.
// index counts the proximity waypoints from 0.
std::vector<std::uint8_t> proximityRecord(const std::string& type, const Proximity& proximity,
                                          int index);
Proximity proximityOf(const std::string& type, std::span<const std::uint8_t> record);

}  // namespace marlune::receivers::garmin
