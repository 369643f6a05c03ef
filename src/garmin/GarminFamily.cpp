#include "garmin/GarminFamily.h"

namespace marlune {

std::string GarminFamily::getProtocoles() const {
    return unit_.capabilities().getProtocoles();
}

bool GarminFamily::offers(Member member) const {
    const GpsCapability& capability = unit_.capabilities();
    switch (member) {
        case Member::getWaypts:
        case Member::SendWaypts:
            return !capability.waypointProtocol.empty();
        case Member::getTracks:
        case Member::SendTraces:
            return !capability.trackProtocol.empty();
        case Member::GetRoutes:
        case Member::SendRoutes:
            return !capability.routeProtocol.empty();
    }
    return true;
}

UploadFormat GarminFamily::uploadFormat() const {
    return unit_.capabilities().uploadFormat(Family::uploadFormat());
}

}  // namespace marlune
