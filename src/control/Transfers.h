// What every transfer member does before its family's procedure runs: the capability gate, the
// trace line, the emptied queues of a download, the upload file of an upload.
#pragma once

#include <string>

#include "control/Families.h"

namespace marlune {

// A row of the transfers: data that the members of GpsControl differ in.
struct Transfer {
    std::string GpsCapability::*protocol;  // what the gate asks the unit for
    // The gate asks for the codes "GRM" and "GRM_USB" alone, instead of any that contains "GRM".
    bool exactCode;
    const char* traceText;
    Service Family::*service;
};

extern const Transfer kWaypointDownload;
extern const Transfer kTrackDownload;
extern const Transfer kRouteDownload;

bool runDownload(ControlState& control, const Transfer& transfer);
bool runProximityDownload(ControlState& control);

bool uploadWaypoints(ControlState& control, const std::string& path);
bool uploadRoutes(ControlState& control, const std::string& path);
bool uploadTracks(ControlState& control, const std::string& path);

// "Protocole non disponible pour ce GPS", critical.
void showNotAvailable(Host& host);

}  // namespace marlune
