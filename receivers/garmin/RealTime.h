// What a unit says of the present moment: date and time (D600), position (D700), and the
// position-velocity-time record (D800) of somebody who walks.
#pragma once

#include <cstdint>
#include <vector>

#include "receivers/DeviceData.h"

namespace marlune::receivers::garmin {

// Where the unit is after so many seconds, and how it moves: round a circle, at a walk.
struct Motion {
    double latitude = 0;   // degrees
    double longitude = 0;  // degrees
    double altitude = 0;   // metres above mean sea level
    double east = 0;       // metres per second
    double north = 0;
};
Motion walk(const Place& centre, double seconds);

// Dates are days since 30/12/1899, UTC.
std::vector<std::uint8_t> dateRecord(double date);
// Radians, as units send them.
std::vector<std::uint8_t> positionRecord(const Motion& motion);
std::vector<std::uint8_t> pvtRecord(const Motion& motion, double date);

}  // namespace marlune::receivers::garmin
