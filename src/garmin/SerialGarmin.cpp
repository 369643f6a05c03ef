#include "garmin/SerialGarmin.h"

#include <utility>

#include "base/Contains.h"
#include "garmin/Downloads.h"
#include "garmin/Identification.h"
#include "garmin/RealTime.h"
#include "garmin/Uploads.h"
#include "garmin/link/SerialGarminLink.h"
#include "serial/LineSpeeds.h"

namespace marlune {
namespace {

// The open port as a link to the unit, for the time of one service, and the procedures over it.
class Line {
public:
    Line(ControlServices& services, GarminUnit& unit)
        : services_(services), unit_(unit), lease_(services.port), link_(services, lease_) {}

    template <class Procedures>
    Procedures run() {
        return {services_, link_, services_.connection, unit_};
    }

private:
    ControlServices& services_;
    GarminUnit& unit_;
    PortLease lease_;
    SerialGarminLink link_;
};

}  // namespace

bool SerialGarmin::serves(std::string_view protocolCode) const {
    return contains(protocolCode, "GRM") && !contains(protocolCode, "GRM_USB");
}

std::optional<LineChoice> SerialGarmin::line() const {
    return isPlain() ? std::optional<LineChoice>({lineSettings(kGarminSpeed), {2048, 1024}})
                     : std::nullopt;
}

bool SerialGarmin::identify() {
    return !isPlain() || Line(services(), unit()).run<GarminIdentification>().grmGetAttributes();
}

std::string SerialGarmin::getProtocoles() const {
    return isPlain() ? GarminFamily::getProtocoles() : std::string();
}

bool SerialGarmin::offers(Member member) const {
    const bool isAsked = isPlain() || (member != Member::getWaypts && member != Member::GetRoutes);
    return !isAsked || GarminFamily::offers(member);
}

bool SerialGarmin::getWaypts() {
    return Line(services(), unit()).run<GarminDownloads>().getWaypts();
}

bool SerialGarmin::getTracks() {
    return Line(services(), unit()).run<GarminDownloads>().getTracks();
}

bool SerialGarmin::GetRoutes() {
    return Line(services(), unit()).run<GarminDownloads>().GetRoutes();
}

bool SerialGarmin::getProximites() {
    if (unit().capabilities().proximityProtocol.empty()) {
        return Family::getProximites();
    }
    return Line(services(), unit()).run<GarminDownloads>().getProximites();
}

bool SerialGarmin::SendWaypts(const Upload<Waypoint>& upload) {
    return Line(services(), unit()).run<GarminUploads>().SendWaypts(upload);
}

bool SerialGarmin::SendRoutes(const Upload<Route>& upload) {
    return Line(services(), unit()).run<GarminUploads>().SendRoutes(upload);
}

bool SerialGarmin::SendTraces(const Upload<TrackItem>& upload) {
    return Line(services(), unit()).run<GarminUploads>().SendTraces(upload);
}

bool SerialGarmin::StartPvtData() {
    return Line(services(), unit()).run<GarminRealTime>().StartPvtData(streams_);
}

void SerialGarmin::endRealTime() {
    if (std::exchange(streams_, false)) {
        Line(services(), unit()).run<GarminRealTime>().endOutput();
    }
}

double SerialGarmin::GetTime() {
    return Line(services(), unit()).run<GarminRealTime>().GetTime();
}

std::string SerialGarmin::getPosition() {
    return Line(services(), unit()).run<GarminRealTime>().getPosition();
}

void SerialGarmin::StopTransfert() {
    if (isPlain()) {
        Line(services(), unit()).run<GarminIdentification>().stopTransfer();
    }
}

}  // namespace marlune
