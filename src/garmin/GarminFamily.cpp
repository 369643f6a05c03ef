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
    const GpsCapability& capability = unit_.capabilities();
    UploadFormat format = Family::uploadFormat();
    format.waypointType = capability.waypointType;
    format.routeWaypointType = capability.d106;
    format.trackProtocol = capability.trackProtocol;
    format.trackHeaderType = capability.trackHeaderType;
    return format;
}

}  // namespace marlune
