// Routes from route sentences. A route takes several sentences, each with its own number in the
// series, the route's number, and the names of some of its points; the points themselves come from
// waypoint sentences.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "garmin/records/Route.h"
#include "garmin/records/Waypoint.h"
#include "host/TransferLog.h"

namespace marlune {

// What one route sentence says. Texts are UTF-8, without blanks around them.
struct RoutePhrase {
    int total = 0;  // sentences of this route
    int index = 0;  // of this sentence, from 1
    std::uint8_t number = 0;
    std::string name;  // may be empty
    std::vector<std::string> points;
};

class RouteAssembly {
public:
    // Reports routes through the events RouteHeader and RouteData, in one numbering from 1. Points
    // are looked up in waypoints by name; unknown ones are traced, counted in the report and left
    // out.
    RouteAssembly(Services& services, const std::map<std::string, Waypoint>& waypoints,
                  TransferLog& log)
        : services_(services), waypoints_(waypoints), log_(log) {}

    // Sentence 1, or one of another route, begins a route; the last sentence of a route reports it.
    void take(const RoutePhrase& phrase);
    // Reports a route whose last sentence did not come.
    void finish();

    [[nodiscard]] bool foundRoutes() const { return found_; }

private:
    // As many as a route can count.
    static constexpr std::size_t kMostPoints = 32767;

    void addPoints(const RoutePhrase& phrase);

    Services& services_;
    const std::map<std::string, Waypoint>& waypoints_;
    TransferLog& log_;
    std::optional<Route> route_;
    int item_ = 0;
    bool found_ = false;
};

// Raises RouteHeader, then RouteData for each point. Routes and points share one numbering: numitem
// is the number of the event before and is advanced. sens: "D" for downloads, "U" for uploads.
void reportRoute(Services& services, const Route& route, int& numitem, const char* sens);

}  // namespace marlune
