// Distances on the ground.
#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

namespace marlune::qt {

// Metres between two places in degrees, on a sphere of the earth's mean radius: half a percent
// from the ellipsoid at most, and as exact for the next metre as for the antipodes.
inline double groundDistance(const auto& from, const auto& to) {
    constexpr double kMeanRadius = 6371008.8;
    constexpr double kRadians = std::numbers::pi / 180;
    const auto squaredSine = [](double degrees) {
        const double sine = std::sin(degrees * kRadians / 2);
        return sine * sine;
    };
    const double haversine = squaredSine(to.latitude - from.latitude) +
                             std::cos(from.latitude * kRadians) * std::cos(to.latitude * kRadians) *
                                 squaredSine(to.longitude - from.longitude);
    return 2 * kMeanRadius * std::asin(std::sqrt(std::min(haversine, 1.0)));
}

}  // namespace marlune::qt
