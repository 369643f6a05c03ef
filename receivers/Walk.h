// Somebody who walks round a place: what receivers tell of the present moment.
#pragma once

#include "receivers/DeviceData.h"

namespace marlune::receivers {

struct Motion {
    double latitude = 0;   // degrees
    double longitude = 0;  // degrees, -180 to 180
    double altitude = 0;   // metres above mean sea level
    double east = 0;       // metres per second
    double north = 0;
};

// Where the walk is after so many seconds, and how it moves: clockwise on a circle that begins
// north of the place.
Motion walk(const Place& centre, double seconds);

}  // namespace marlune::receivers
