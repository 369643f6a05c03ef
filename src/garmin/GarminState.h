// What the control keeps about a Garmin unit: its capabilities and the records of the last transfer
// of each kind.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "garmin/GpsCapability.h"
#include "garmin/UploadFiles.h"
#include "garmin/records/Route.h"
#include "garmin/records/RteLink.h"
#include "garmin/records/Waypoint.h"

namespace marlune {

struct GarminState {
    // None until an identification made one.
    std::optional<GpsCapability> capability;

    // Each replaced at the start of a transfer of its kind.
    std::vector<Waypoint> waypoints;
    std::vector<TrackItem> tracks;
    std::vector<Route> routes;
    std::vector<RteLink> routeLinks;
    std::vector<Waypoint> proximities;

    std::string voltages;

    // The capabilities, all empty while there is no capability object.
    [[nodiscard]] const GpsCapability& capabilities() const {
        static const GpsCapability kNone;
        return capability ? *capability : kNone;
    }
};

}  // namespace marlune
