#include "desktop/map/Shapes.h"

#include <cmath>

namespace marlune::desktop {
namespace {

// On the turn around the earth that lies nearest to the point before.
WorldPoint nextTo(const WorldPoint& before, WorldPoint point) {
    point.x += std::round(before.x - point.x);
    return point;
}

class PathMaker {
public:
    explicit PathMaker(const std::string& name) { path_.name = QString::fromStdString(name); }

    void add(double latitude, double longitude, bool begins) {
        WorldPoint point = worldOf({latitude, longitude});
        if (!path_.pieces.empty()) {
            point = nextTo(last_, point);
            path_.area.include(point);
        } else {
            path_.area = WorldArea::of(point);
        }
        if (begins || path_.pieces.empty()) {
            path_.pieces.emplace_back();
        }
        path_.pieces.back().push_back(point);
        last_ = point;
    }
    Path take() { return std::move(path_); }

private:
    Path path_;
    WorldPoint last_;
};

Place placeOf(const WaypointRecord& waypoint) {
    return {QString::fromStdString(waypoint.name),
            worldOf({waypoint.latitude, waypoint.longitude})};
}

// Takes areas together on one turn around the earth: beside what came first.
class AreaMaker {
public:
    void add(WorldArea area) {
        if (!area_) {
            area_ = area;
            return;
        }
        const double turns = std::round(area_->centre().x - area.centre().x);
        area.left += turns;
        area.right += turns;
        area_->include(area);
    }
    [[nodiscard]] std::optional<WorldArea> take() const { return area_; }

private:
    std::optional<WorldArea> area_;
};

}  // namespace

std::optional<WorldArea> Shapes::area() const {
    AreaMaker area;
    for (const auto* paths : {&tracks, &routes}) {
        for (const Path& path : *paths) {
            if (!path.pieces.empty()) {
                area.add(path.area);
            }
        }
    }
    for (const Place& place : places) {
        area.add(WorldArea::of(place.at));
    }
    return area.take();
}

Shapes shapesOf(const Records& records) {
    Shapes shapes;
    for (const WaypointRecord& waypoint : records.waypoints) {
        shapes.places.push_back(placeOf(waypoint));
    }
    for (const TrackRecord& track : records.tracks) {
        PathMaker path(track.name);
        for (const TrackPointRecord& point : track.points) {
            path.add(point.latitude, point.longitude, point.segmentStart);
        }
        shapes.tracks.push_back(path.take());
    }
    for (const RouteRecord& route : records.routes) {
        PathMaker path(route.name);
        for (const RoutePointRecord& point : route.points) {
            path.add(point.point.latitude, point.point.longitude, false);
            shapes.routePoints.push_back(placeOf(point.point));
        }
        shapes.routes.push_back(path.take());
    }
    return shapes;
}

}  // namespace marlune::desktop
