// What a receiver that speaks sentences holds. Waypoints are stored by name, routes by number, and
// the points of a route are waypoints of the memory: a sentence carries nothing but their names.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "receivers/DeviceData.h"

namespace marlune::receivers::nmea {

// What one route sentence says. A long route takes several.
struct RoutePart {
    int total = 0;  // sentences of this route
    int index = 0;  // of this one, from 1
    int number = 0;
    std::string name;
    std::vector<std::string> points;
};

class Memory {
public:
    // Names are cut to that length, the points of the routes become waypoints, and a track's points
    // without position breaks between segments. Waypoints of one name that are in the data stay as
    // they are there.
    Memory(DeviceData data, std::size_t longestName);

    [[nodiscard]] const std::vector<Place>& places() const { return data_.places; }
    [[nodiscard]] const std::vector<Track>& tracks() const { return data_.tracks; }
    [[nodiscard]] const std::vector<Route>& routes() const { return data_.routes; }
    // As text lines.
    [[nodiscard]] std::vector<std::string> lines() const;

    // Each is false when it is refused: no room, no name, points that nobody knows, sentences out
    // of order.
    bool store(Place place);
    bool store(const RoutePart& part);
    // The first point of an upload that goes to a track of the memory empties that track.
    bool store(const std::string& track, const TrackPoint& point);
    void endUpload();

private:
    [[nodiscard]] std::string cut(std::string name) const;
    [[nodiscard]] const Place* find(const std::string& name) const;
    void adopt(Route& route);
    void adopt(Track& track);
    Route* openRoute(const RoutePart& part);

    DeviceData data_;
    std::size_t longestName_;
    std::map<std::string, std::size_t> placeByName_;
    std::size_t pointCount_ = 0;             // of all tracks
    std::set<std::string> uploadingTracks_;  // those that the present upload has begun
    RoutePart lastPart_;                     // of the present upload
};

}  // namespace marlune::receivers::nmea
