// Sending waypoints and routes as sentences, the same for every family: one sentence after the
// other, each reported to the host, none waited for.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "family/Upload.h"
#include "garmin/records/Route.h"
#include "garmin/records/Waypoint.h"
#include "host/Services.h"
#include "serial/ComPort.h"

namespace marlune {

// How a family writes its records.
struct UploadDialect {
    std::string (*waypoint)(const Waypoint& waypoint);
    // Naming points only: they are sent as waypoints first.
    std::vector<std::string> (*route)(const Route& route);
    std::string_view endCommand;  // empty for families that have none
};

// Writes wire text and traces it, unless the lease is lost. False when the system did not take it.
bool sendSentence(Services& services, PortLease& port, std::string_view sentence);

// Both end early, with their end event, when the host requests a stop, a handler closes the port,
// or the port is gone. A record that cannot be written as a sentence raises RunTimeError, with no
// end event.
void uploadWaypointSentences(Services& services, PortLease& port, const UploadDialect& dialect,
                             const Upload<Waypoint>& upload);
void uploadRouteSentences(Services& services, PortLease& port, const UploadDialect& dialect,
                          const Upload<Route>& upload);

}  // namespace marlune
