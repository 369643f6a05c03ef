// What the control keeps of a Magellan receiver between transfers.
#pragma once

#include <map>
#include <string>

#include "garmin/records/Waypoint.h"

namespace marlune {

struct MagellanState {
    // The waypoints of the last download by name: route sentences carry names only.
    std::map<std::string, Waypoint> waypoints;
    // Of the list that was asked for last, then of the sentence that ended it.
    std::string lastChecksum;
};

}  // namespace marlune
