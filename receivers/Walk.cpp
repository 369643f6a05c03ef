#include "receivers/Walk.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace marlune::receivers {

Motion walk(const Place& centre, double seconds) {
    constexpr double kRadius = 120;  // metres
    constexpr double kSpeed = 1.3;   // metres per second
    constexpr double kMetresADegree = 60 * 1852.0;
    const double angle = std::remainder(kSpeed / kRadius * seconds, 2 * std::numbers::pi);
    // Near the poles a circle would wind itself up.
    const double shrink =
        std::max(0.01, std::cos(std::clamp(centre.latitude, -90.0, 90.0) * std::numbers::pi / 180));
    Motion motion;
    motion.latitude = centre.latitude + kRadius * std::cos(angle) / kMetresADegree;
    motion.longitude = std::remainder(
        centre.longitude + kRadius * std::sin(angle) / kMetresADegree / shrink, 360.0);
    motion.altitude = centre.altitude.value_or(0);
    motion.east = kSpeed * std::cos(angle);
    motion.north = -kSpeed * std::sin(angle);
    return motion;
}

}  // namespace marlune::receivers
