// Where positions lie on a map of the whole world: the Web-Mercator square that map tiles use.
#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

namespace marlune::desktop {

// Degrees of WGS 84.
struct GeoPoint {
    double latitude = 0;
    double longitude = 0;
};

// The square of the world: x from 0 at 180 degrees west to 1 at 180 degrees east, y from 0 in the
// north to 1 in the south. x beyond it is another turn around the earth.
struct WorldPoint {
    double x = 0.5;
    double y = 0.5;
};

// The square ends there; positions nearer to a pole lie on its edge.
inline constexpr double kLastLatitude = 85.05112877980659;
inline constexpr double kEquatorMetres = 40075016.685578488;  // around WGS 84

inline WorldPoint worldOf(GeoPoint point) {
    const double latitude =
        std::clamp(point.latitude, -kLastLatitude, kLastLatitude) * std::numbers::pi / 180;
    return {point.longitude / 360 + 0.5,
            0.5 - std::asinh(std::tan(latitude)) / (2 * std::numbers::pi)};
}

// The longitude is the one between -180 and 180.
inline GeoPoint positionOf(WorldPoint world) {
    const double turn = world.x - std::floor(world.x);
    const double latitude = std::atan(std::sinh((0.5 - world.y) * 2 * std::numbers::pi));
    return {latitude * 180 / std::numbers::pi, turn * 360 - 180};
}

}  // namespace marlune::desktop
