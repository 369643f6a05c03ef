#include "family/Family.h"

#include "family/Messages.h"

namespace marlune {

UploadFormat Family::uploadFormat() const {
    UploadFormat format;
    format.protocolCode = connection().protocolCode;
    format.decimalSeparator = connection().decimalSetting;
    return format;
}

bool Family::getProximites() {
    services_.host.messageBox(text::kNotSupported, BoxIcon::exclamation);
    return TransferLog(services_, TransferKind::proximities, TransferDirection::download)
        .end(Ending::notOffered);
}

bool Family::SendWaypts(const Upload<Waypoint>& /*upload*/) {
    return notOffered(TransferKind::waypoints, TransferDirection::upload);
}

bool Family::SendRoutes(const Upload<Route>& /*upload*/) {
    return notOffered(TransferKind::routes, TransferDirection::upload);
}

bool Family::SendTraces(const Upload<TrackItem>& /*upload*/) {
    return notOffered(TransferKind::tracks, TransferDirection::upload);
}

double Family::GetTime() {
    (void)notOffered(TransferKind::time);
    return 0;
}

std::string Family::getPosition() {
    (void)notOffered(TransferKind::position);
    return {};
}

bool Family::notOffered(TransferKind kind, TransferDirection direction) const {
    services_.host.messageBox(text::kNotAvailable, BoxIcon::critical);
    return TransferLog(services_, kind, direction).end(Ending::notOffered);
}

}  // namespace marlune
