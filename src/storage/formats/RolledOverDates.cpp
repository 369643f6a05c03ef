#include <cmath>

#include "marlune/RecordFiles.h"
#include "storage/formats/GpxValues.h"

namespace marlune {
namespace {

constexpr double kDay = 86400;
constexpr double kRollover = 1024 * 7 * kDay;
constexpr double kYear = 365 * kDay;

}  // namespace

bool fixRolledOverDate(std::optional<double>& time, double reference) {
    if (!time || !(*time < reference - kRollover)) {
        return false;
    }
    *time += kRollover * std::floor((reference + kYear - *time) / kRollover);
    return true;
}

int fixRolledOverDates(Records& records, double reference) {
    int moved = 0;
    const auto fix = [&](std::optional<double>& time) {
        moved += fixRolledOverDate(time, reference) ? 1 : 0;
    };
    for (auto* list : {&records.waypoints, &records.proximities}) {
        for (WaypointRecord& waypoint : *list) {
            fix(waypoint.time);
        }
    }
    for (RouteRecord& route : records.routes) {
        for (RoutePointRecord& point : route.points) {
            fix(point.point.time);
        }
    }
    for (TrackRecord& track : records.tracks) {
        for (TrackPointRecord& point : track.points) {
            fix(point.time);
        }
    }
    if (records.fix) {
        fix(records.fix->time);
    }
    return moved;
}

double buildDate() {
    return isoSeconds(MARLUNE_BUILD_DATE "T00:00:00Z").value_or(0);
}

}  // namespace marlune
