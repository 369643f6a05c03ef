// What the control keeps of an MLR receiver between transfers.
#pragma once

#include <map>
#include <string>

#include "garmin/records/Waypoint.h"

namespace marlune {

struct MlrState {
    // The receiver sends its lists as data blocks; otherwise as sentences, when its user starts
    // that at the receiver.
    bool sendsBlocks = false;
    // Every waypoint heard so far by name: route sentences carry names only.
    std::map<std::string, Waypoint> waypoints;
};

}  // namespace marlune
