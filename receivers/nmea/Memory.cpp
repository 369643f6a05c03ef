#include "receivers/nmea/Memory.h"

#include <algorithm>
#include <utility>

#include "base/CodePage.h"

namespace marlune::receivers::nmea {
namespace {

constexpr std::size_t kMostPlaces = 100000;
constexpr std::size_t kMostPoints = 1000000;
constexpr std::size_t kMostTracks = 1000;
constexpr std::size_t kMostRoutePoints = 10000;
constexpr int kHighestRoute = 255;

}  // namespace

Memory::Memory(DeviceData data, std::size_t longestName)
    : data_(std::move(data)), longestName_(longestName) {
    for (std::size_t at = 0; at < data_.places.size(); ++at) {
        Place& place = data_.places[at];
        place.ident = cut(place.ident);
        placeByName_.try_emplace(place.ident, at);
    }
    for (Route& route : data_.routes) {
        adopt(route);
    }
    for (Track& track : data_.tracks) {
        adopt(track);
    }
}

std::string Memory::cut(std::string name) const {
    std::string ansi = toAnsi(name);
    if (ansi.size() > longestName_) {
        name = fromAnsi(trimBlanks(std::string_view(ansi).substr(0, longestName_)));
    }
    return name;
}

// No sentence carries a link, nor a point that is no waypoint.
void Memory::adopt(Route& route) {
    route.links.clear();
    for (Place& point : route.points) {
        point.ident = cut(point.ident);
        if (placeByName_.try_emplace(point.ident, data_.places.size()).second) {
            data_.places.push_back(point);
        }
    }
}

// A point without position is a break.
void Memory::adopt(Track& track) {
    std::vector<TrackPoint> points;
    bool broken = true;
    for (TrackPoint& point : track.points) {
        if (point.hasPosition()) {
            point.newSegment |= std::exchange(broken, false);
            points.push_back(point);
        } else {
            broken = true;
        }
    }
    track.points = std::move(points);
    pointCount_ += track.points.size();
}

const Place* Memory::find(const std::string& name) const {
    const auto found = placeByName_.find(name);
    return found == placeByName_.end() ? nullptr : &data_.places[found->second];
}

std::vector<std::string> Memory::lines() const {
    DeviceData data = data_;
    for (Route& route : data.routes) {
        for (Place& point : route.points) {
            const Place* const place = find(point.ident);
            point = place == nullptr ? point : *place;
        }
    }
    return linesOf(data);
}

bool Memory::store(Place place) {
    place.ident = cut(place.ident);
    if (place.ident.empty()) {
        return false;
    }
    const auto held = placeByName_.find(place.ident);
    if (held != placeByName_.end()) {
        data_.places[held->second] = std::move(place);
        return true;
    }
    if (data_.places.size() >= kMostPlaces) {
        return false;
    }
    placeByName_.emplace(place.ident, data_.places.size());
    data_.places.push_back(std::move(place));
    return true;
}

bool Memory::store(const std::string& track, const TrackPoint& point) {
    auto held = std::find_if(data_.tracks.begin(), data_.tracks.end(),
                             [&](const Track& each) { return each.name == track; });
    if (held == data_.tracks.end()) {
        if (data_.tracks.size() >= kMostTracks) {
            return false;
        }
        held = data_.tracks.insert(held, {track, {}});
    }
    if (uploadingTracks_.insert(track).second) {
        pointCount_ -= held->points.size();
        held->points.clear();
    }
    if (pointCount_ >= kMostPoints) {
        return false;
    }
    held->points.push_back(point);
    held->points.back().newSegment = held->points.size() == 1;
    ++pointCount_;
    return true;
}

bool Memory::store(const RoutePart& part) {
    std::vector<Place> points;
    for (const std::string& name : part.points) {
        const Place* const place = find(cut(name));
        if (place == nullptr) {
            return false;
        }
        points.push_back(*place);
    }
    Route* const route = openRoute(part);
    if (route == nullptr || route->points.size() + points.size() > kMostRoutePoints) {
        return false;
    }
    route->points.insert(route->points.end(), points.begin(), points.end());
    lastPart_ = part;
    return true;
}

// The route that the sentence belongs to: a new one, or the one that the sentence before began.
Route* Memory::openRoute(const RoutePart& part) {
    if (part.number > kHighestRoute) {
        return nullptr;
    }
    auto held = std::find_if(data_.routes.begin(), data_.routes.end(),
                             [&](const Route& each) { return each.number == part.number; });
    if (part.index == 1) {
        held = held == data_.routes.end() ? data_.routes.insert(held, Route()) : held;
        *held = {part.number, part.name, {}, {}};
        return &*held;
    }
    const bool follows = held != data_.routes.end() && lastPart_.number == part.number &&
                         lastPart_.index + 1 == part.index;
    return follows ? &*held : nullptr;
}

void Memory::endUpload() {
    uploadingTracks_.clear();
    lastPart_ = {};
}

}  // namespace marlune::receivers::nmea
