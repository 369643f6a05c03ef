#include "desktop/map/Viewport.h"

#include <algorithm>
#include <cmath>

namespace marlune::desktop {

void WorldArea::include(WorldPoint point) {
    left = std::min(left, point.x);
    right = std::max(right, point.x);
    top = std::min(top, point.y);
    bottom = std::max(bottom, point.y);
}

void WorldArea::include(const WorldArea& other) {
    include(WorldPoint{other.left, other.top});
    include(WorldPoint{other.right, other.bottom});
}

double Viewport::worldPixels() const {
    return kTilePixels * std::exp2(zoom_);
}

WorldArea Viewport::area() const {
    const WorldPoint first = worldAt({0, 0});
    const WorldPoint last = worldAt({size_.width(), size_.height()});
    return {first.x, first.y, last.x, last.y};
}

void Viewport::setSize(QSizeF size) {
    size_ = {std::max(size.width(), 1.0), std::max(size.height(), 1.0)};
}

void Viewport::show(GeoPoint centre, double zoom) {
    centre_ = worldOf(centre);
    zoom_ = zoom;
    hold();
}

void Viewport::fit(const WorldArea& area, double margin) {
    constexpr double kStreets = 15;
    const double width = std::max(size_.width() - 2 * margin, 1.0);
    const double height = std::max(size_.height() - 2 * margin, 1.0);
    const double pixels = std::min(width / std::max(area.right - area.left, 1e-12),
                                   height / std::max(area.bottom - area.top, 1e-12));
    centre_ = area.centre();
    zoom_ = std::min(std::log2(pixels / kTilePixels), kStreets + 1);
    if (area.right == area.left && area.bottom == area.top) {
        zoom_ = kStreets;
    }
    hold();
}

void Viewport::pan(QPointF by) {
    centre_.x -= by.x() / worldPixels();
    centre_.y -= by.y() / worldPixels();
    hold();
}

void Viewport::zoomAt(QPointF point, double levels) {
    const WorldPoint fixed = worldAt(point);
    zoom_ = std::clamp(zoom_ + levels, kFarthest, kNearest);
    const QPointF now = screenOf(fixed);
    pan(point - now);
}

QPointF Viewport::screenOf(GeoPoint point) const {
    WorldPoint world = worldOf(point);
    world.x += turnsTo(world.x);
    return screenOf(world);
}

QPointF Viewport::screenOf(WorldPoint world) const {
    return {size_.width() / 2 + (world.x - centre_.x) * worldPixels(),
            size_.height() / 2 + (world.y - centre_.y) * worldPixels()};
}

double Viewport::turnsTo(double x) const {
    return std::round(centre_.x - x);
}

WorldPoint Viewport::worldAt(QPointF screen) const {
    return {centre_.x + (screen.x() - size_.width() / 2) / worldPixels(),
            centre_.y + (screen.y() - size_.height() / 2) / worldPixels()};
}

GeoPoint Viewport::positionAt(QPointF screen) const {
    return positionOf(worldAt(screen));
}

double Viewport::metresPerPixel() const {
    const double latitude = positionOf(centre_).latitude * std::numbers::pi / 180;
    return kEquatorMetres * std::cos(latitude) / worldPixels();
}

// The centre stays on the world: around it as often as one likes, but not beyond its edges.
void Viewport::hold() {
    zoom_ = std::clamp(zoom_, kFarthest, kNearest);
    centre_.x -= std::floor(centre_.x);
    centre_.y = std::clamp(centre_.y, 0.0, 1.0);
}

}  // namespace marlune::desktop
