// The transfers of MLR receivers. Newer units send their tracks and waypoints as data blocks at a
// raised line speed, older ones as sentences; routes are sentences on both.
//
// A procedure returns when its transfer is over and reports through the host's events and boxes.
// All end early when the host requests a stop or a handler closes the port.
#pragma once

#include <vector>

#include "garmin/records/Route.h"
#include "garmin/records/Waypoint.h"
#include "host/ConnectionState.h"
#include "host/Services.h"
#include "nmea/NmeaState.h"
#include "nmea/SentenceReader.h"
#include "nmea/mlr/MlrState.h"
#include "serial/ComPort.h"

namespace marlune {

class Mlr {
public:
    Mlr(Services& services, PortLease& port, ConnectionState& connection, NmeaState& nmea,
        MlrState& state);

    // Asks who the receiver is and fills the identity texts. True when it answered; then the
    // connection counts as connected.
    bool mlrIdent();

    // Downloads: true when something was there and came to its end.
    bool mlrGetWaypoints();
    bool mlrGetTracks();
    bool mlrGetRoutes();

    // Uploads. A record that cannot be written as a sentence raises RunTimeError, with no end
    // event.
    void mlrSendWaypoints(std::vector<Waypoint>& waypoints);
    void mlrSendRoutes(std::vector<Route>& routes);
    // These receivers take no tracks: tells the user so.
    void mlrSendTracks();

private:
    Services& services_;
    PortLease& port_;
    ConnectionState& connection_;
    NmeaState& nmea_;
    MlrState& state_;
    SentenceReader reader_;
};

}  // namespace marlune
