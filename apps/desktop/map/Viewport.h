// The part of the world that a map shows, in pixels of its own. Numbers only: no widget.
#pragma once

#include <QtCore/QPointF>
#include <QtCore/QSizeF>
#include <optional>

#include "desktop/map/Mercator.h"

namespace marlune::desktop {

// An area of the world; x may go beyond the date line.
struct WorldArea {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    void include(WorldPoint point);
    void include(const WorldArea& other);
    [[nodiscard]] WorldPoint centre() const { return {(left + right) / 2, (top + bottom) / 2}; }
    static WorldArea of(WorldPoint point) { return {point.x, point.y, point.x, point.y}; }
};

class Viewport {
public:
    static constexpr double kTilePixels = 256;
    static constexpr double kFarthest = 0;  // the world is one tile
    static constexpr double kNearest = 20;  // some 15 cm a pixel at the equator

    [[nodiscard]] QSizeF size() const { return size_; }
    [[nodiscard]] double zoom() const { return zoom_; }
    [[nodiscard]] WorldPoint centre() const { return centre_; }
    // How many pixels the world is wide.
    [[nodiscard]] double worldPixels() const;
    [[nodiscard]] WorldArea area() const;

    // The centre stays where it is.
    void setSize(QSizeF size);
    // zoom is the level of map tiles: each level doubles the scale. Held between the limits.
    void show(GeoPoint centre, double zoom);
    // The nearest view that has the area in it, with a margin in pixels around. A single point is
    // shown at a scale of streets.
    void fit(const WorldArea& area, double margin = 24);

    // By pixels: what is under the mouse goes with it.
    void pan(QPointF by);
    // The position under that point stays there.
    void zoomAt(QPointF point, double levels);

    // On the turn around the earth that lies nearest to the centre.
    [[nodiscard]] QPointF screenOf(GeoPoint point) const;
    // On the very turn of that x.
    [[nodiscard]] QPointF screenOf(WorldPoint world) const;
    // How many whole turns bring something at x nearest to the centre.
    [[nodiscard]] double turnsTo(double x) const;
    [[nodiscard]] WorldPoint worldAt(QPointF screen) const;
    [[nodiscard]] GeoPoint positionAt(QPointF screen) const;
    // Ground that one pixel covers at the centre's latitude.
    [[nodiscard]] double metresPerPixel() const;

private:
    void hold();

    QSizeF size_{1, 1};
    WorldPoint centre_;
    double zoom_ = 1;
};

}  // namespace marlune::desktop
