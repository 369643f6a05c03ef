// Records as shapes of the map's world.
#pragma once

#include <QtCore/QString>
#include <optional>
#include <vector>

#include "desktop/map/Viewport.h"
#include "marlune/Records.h"

namespace marlune::desktop {

// Points in a row, taken on: no two neighbours lie on different turns around the earth.
struct Path {
    QString name;
    // Of one piece each: tracks have gaps.
    std::vector<std::vector<WorldPoint>> pieces;
    WorldArea area;
};

struct Place {
    QString name;
    WorldPoint at;
};

struct Shapes {
    std::vector<Place> places;
    std::vector<Path> tracks;  // as many as there are tracks, those without points too
    std::vector<Path> routes;
    std::vector<Place> routePoints;

    // The smallest area with all of it; nothing without any.
    [[nodiscard]] std::optional<WorldArea> area() const;
};

Shapes shapesOf(const Records& records);

}  // namespace marlune::desktop
