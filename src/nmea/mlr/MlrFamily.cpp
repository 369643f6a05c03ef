#include "nmea/mlr/MlrFamily.h"

#include "nmea/Messages.h"
#include "nmea/mlr/Mlr.h"
#include "serial/LineSpeeds.h"

namespace marlune {
namespace {

// The procedures on the open port, for the time of one service.
class Line {
public:
    Line(ControlServices& services, NmeaState& nmea, MlrState& state)
        : lease_(services.port), mlr_(services, lease_, services.connection, nmea, state) {}

    Mlr* operator->() { return &mlr_; }

private:
    PortLease lease_;
    Mlr mlr_;
};

}  // namespace

std::optional<LineChoice> MlrFamily::line() const {
    constexpr int kStopBits = 2;  // is what these receivers want
    return LineChoice{lineSettings(kNmeaSpeed, kStopBits), {2048, 512}};
}

bool MlrFamily::identify() {
    return Line(services(), nmea_, state_)->mlrIdent();
}

std::string MlrFamily::getProtocoles() const {
    return nmeatext::kMlrProtocols;
}

bool MlrFamily::getWaypts() {
    return Line(services(), nmea_, state_)->mlrGetWaypoints();
}

bool MlrFamily::getTracks() {
    return Line(services(), nmea_, state_)->mlrGetTracks();
}

bool MlrFamily::GetRoutes() {
    return Line(services(), nmea_, state_)->mlrGetRoutes();
}

// Nothing that is sent is answered, so nobody is told that it arrived.

bool MlrFamily::SendWaypts(const Upload<Waypoint>& upload) {
    Line(services(), nmea_, state_)->mlrSendWaypoints(upload);
    return false;
}

bool MlrFamily::SendRoutes(const Upload<Route>& upload) {
    Line(services(), nmea_, state_)->mlrSendRoutes(upload);
    return false;
}

bool MlrFamily::SendTraces(const Upload<TrackItem>& /*upload*/) {
    Line(services(), nmea_, state_)->mlrSendTracks();
    return false;
}

}  // namespace marlune
