#include "control/Transfers.h"

#include "base/RunTimeError.h"
#include "garmin/Messages.h"
#include "garmin/UploadFiles.h"
#include "garmin/values/Fichier.h"
#include "storage/StorageTransfers.h"

namespace marlune {

const Transfer kWaypointDownload = {&GpsCapability::waypointProtocol, true, "GetWaypoints",
                                    &Family::getWaypts};
const Transfer kTrackDownload = {&GpsCapability::trackProtocol, false, "GetTracks",
                                 &Family::getTracks};
const Transfer kRouteDownload = {&GpsCapability::routeProtocol, true, "GetRoutes",
                                 &Family::GetRoutes};

namespace {

const Transfer kWaypointUpload = {&GpsCapability::waypointProtocol, false, "SendWaypoints",
                                  &Family::SendWaypts};
const Transfer kRouteUpload = {&GpsCapability::routeProtocol, false, "SendRoutes",
                               &Family::SendRoutes};
const Transfer kTrackUpload = {&GpsCapability::trackProtocol, false, "SendTraces",
                               &Family::SendTraces};

// Units that are a drive of GPX files announce no protocols, so nobody asks them.
bool isAsked(const Transfer& transfer, const std::string& code) {
    return transfer.exactCode ? code == "GRM" || code == "GRM_USB"
                              : contains(code, "GRM") && code != "GRM_USB_GPX";
}

// Whether the connected unit offers the protocol, as far as the family is asked.
bool passesGate(ControlState& control, const Transfer& transfer) {
    if (isAsked(transfer, control.connection.protocolCode) &&
        (control.garmin.capabilities().*transfer.protocol).empty()) {
        showNotAvailable(control.host);
        return false;
    }
    control.trace.traceLine(transfer.traceText);
    return true;
}

bool run(ControlState& control, Service Family::*service) {
    const Service procedure = familyOf(control.connection.protocolCode).*service;
    if (procedure == nullptr) {
        showNotAvailable(control.host);
        return false;
    }
    return procedure(control);
}

bool fileExists(ControlState& control, const std::string& path) {
    Fichier file;
    file.Chemin = path;
    return file.Existant(control.host);
}

UploadFormat uploadFormat(const ControlState& control) {
    if (control.connection.protocolCode == "GRM_USB_GPX") {
        return storageUploadFormat(control.connection.protocolCode, control.decimalSetting);
    }
    const GpsCapability& capability = control.garmin.capabilities();
    return {.protocolCode = control.connection.protocolCode,
            .waypointType = capability.waypointType,
            .routeWaypointType = capability.d106,
            .trackProtocol = capability.trackProtocol,
            .trackHeaderType = capability.trackHeaderType,
            .decimalSeparator = control.decimalSetting};
}

}  // namespace

void showNotAvailable(Host& host) {
    host.messageBox(text::kNotAvailable, BoxIcon::critical);
}

bool runDownload(ControlState& control, const Transfer& transfer) {
    if (!passesGate(control, transfer)) {
        return false;
    }
    control.port.ResetComBuffers();
    return run(control, transfer.service);
}

bool runProximityDownload(ControlState& control) {
    const Service procedure = familyOf(control.connection.protocolCode).getProximites;
    if (procedure == nullptr || control.garmin.capabilities().proximityProtocol.empty()) {
        control.host.messageBox(text::kNotSupported, BoxIcon::exclamation);
        return false;
    }
    return procedure(control);
}

namespace {

// Runs an upload and shows the run-time error that ends it.
template <class Upload>
bool trapped(ControlState& control, const char* errorText, const Upload& upload) {
    try {
        return upload();
    } catch (const RunTimeError& error) {
        control.host.messageBox(errorText + std::to_string(error.number()) + " " + error.what(),
                                BoxIcon::critical);
        return false;
    }
}

}  // namespace

bool uploadWaypoints(ControlState& control, const std::string& path) {
    control.uploadPath = path;
    return trapped(control, text::kWaypointUploadError, [&] {
        return passesGate(control, kWaypointUpload) && fileExists(control, path) &&
               readWaypointFile(control.host, path, uploadFormat(control),
                                control.garmin.waypoints) &&
               run(control, kWaypointUpload.service);
    });
}

bool uploadRoutes(ControlState& control, const std::string& path) {
    control.uploadPath = path;
    return trapped(control, text::kRouteUploadError, [&] {
        return passesGate(control, kRouteUpload) && fileExists(control, path) &&
               readRouteFile(control.host, path, uploadFormat(control), control.garmin.routes) &&
               run(control, kRouteUpload.service);
    });
}

bool uploadTracks(ControlState& control, const std::string& path) {
    control.uploadPath = path;
    if (!passesGate(control, kTrackUpload) || !fileExists(control, path)) {
        return false;
    }
    control.host.setMousePointer(MousePointer::hourglass);
    const bool gathered =
        readTrackFile(control.host, path, uploadFormat(control), control.garmin.tracks);
    control.host.setMousePointer(MousePointer::normal);
    return gathered && trapped(control, text::kTrackUploadError,
                               [&] { return run(control, kTrackUpload.service); });
}

}  // namespace marlune
