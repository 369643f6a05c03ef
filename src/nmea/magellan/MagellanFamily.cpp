#include "nmea/magellan/MagellanFamily.h"

#include "nmea/Messages.h"
#include "nmea/magellan/Magellan.h"
#include "serial/LineSpeeds.h"

namespace marlune {
namespace {

// The procedures on the open port, for the time of one service.
class Line {
public:
    Line(ControlServices& services, NmeaState& nmea, MagellanState& state)
        : lease_(services.port), magellan_(services, lease_, services.connection, nmea, state) {}

    Magellan* operator->() { return &magellan_; }

private:
    PortLease lease_;
    Magellan magellan_;
};

}  // namespace

std::optional<LineChoice> MagellanFamily::line() const {
    const std::int32_t rate = connection().magellanRate;
    return LineChoice{lineSettings(rate == 0 ? kNmeaSpeed : rate), {1024, 512}};
}

bool MagellanFamily::identify() {
    return Line(services(), nmea_, state_)->mgnVersion();
}

std::string MagellanFamily::getProtocoles() const {
    return nmeatext::kMgnProtocols;
}

bool MagellanFamily::getWaypts() {
    return Line(services(), nmea_, state_)->mgnGetWaypoints();
}

bool MagellanFamily::getTracks() {
    return Line(services(), nmea_, state_)->mgnGetTracks();
}

bool MagellanFamily::GetRoutes() {
    return Line(services(), nmea_, state_)->mgnGetRoutes();
}

// The answers to what is sent are not waited for, so nobody is told that it arrived.

bool MagellanFamily::SendWaypts(const Upload<Waypoint>& upload) {
    Line(services(), nmea_, state_)->mgnSendWaypoints(upload);
    return false;
}

bool MagellanFamily::SendRoutes(const Upload<Route>& upload) {
    Line(services(), nmea_, state_)->mgnSendRoutes(upload);
    return false;
}

bool MagellanFamily::SendTraces(const Upload<TrackItem>& upload) {
    Line(services(), nmea_, state_)->mgnSendTracks(upload);
    return false;
}

bool MagellanFamily::StartPvtData() {
    Line(services(), nmea_, state_)->mgnPvt();
    return false;
}

}  // namespace marlune
