#include "control/Families.h"

#include <algorithm>
#include <iterator>

#include "garmin/Downloads.h"
#include "garmin/Identification.h"
#include "garmin/Messages.h"
#include "garmin/RealTime.h"
#include "garmin/Uploads.h"
#include "garmin/link/SerialGarminLink.h"
#include "garmin/link/UsbGarminLink.h"
#include "nmea/Messages.h"
#include "nmea/magellan/Magellan.h"
#include "nmea/mlr/Mlr.h"
#include "storage/StorageTransfers.h"
#include "usb/UsbSession.h"

namespace marlune {
namespace {

// A Garmin link on the serial port, for the time of one service.
struct SerialConnection {
    explicit SerialConnection(ControlState& control)
        : lease(control.port), link(control.services, lease) {}

    PortLease lease;
    SerialGarminLink link;
};

// What runs the services of a Garmin unit.
template <class Procedures>
Procedures garminProcedures(ControlState& control, GarminLink& link);
template <>
GarminDownloads garminProcedures(ControlState& control, GarminLink& link) {
    return {control.services, link, control.connection, control.garmin};
}
template <>
GarminUploads garminProcedures(ControlState& control, GarminLink& link) {
    return {control.services, link, control.garmin};
}
template <>
GarminRealTime garminProcedures(ControlState& control, GarminLink& link) {
    return {control.services, link, control.connection};
}
template <>
GarminIdentification garminProcedures(ControlState& control, GarminLink& link) {
    return {control.services, link, control.connection, control.garmin};
}

template <class Procedures, class Result>
Result runGarmin(ControlState& control, GarminLink& link, Result (Procedures::*service)()) {
    return (garminProcedures<Procedures>(control, link).*service)();
}

template <auto service>
auto onSerial(ControlState& control) {
    SerialConnection serial(control);
    return runGarmin(control, serial.link, service);
}

std::string garminProtocols(ControlState& control) {
    return control.garmin.capabilities().getProtocoles();
}

// Other codes with the letters "GRM" take the same transfers, but identify nothing and tell nothing
// of what an earlier unit announced.
bool isPlainGarmin(const ControlState& control) {
    return control.connection.protocolCode == "GRM";
}

const Family kGarminSerial = {
    .matches =
        [](const std::string& code) { return contains(code, "GRM") && !contains(code, "GRM_USB"); },
    .identify =
        [](ControlState& control) {
            return !isPlainGarmin(control) ||
                   onSerial<&GarminIdentification::grmGetAttributes>(control);
        },
    .protocols =
        [](ControlState& control) {
            return isPlainGarmin(control) ? garminProtocols(control) : std::string();
        },
    .getWaypts = onSerial<&GarminDownloads::getWaypts>,
    .getTracks = onSerial<&GarminDownloads::getTracks>,
    .GetRoutes = onSerial<&GarminDownloads::GetRoutes>,
    .getProximites = onSerial<&GarminDownloads::getProximites>,
    .SendWaypts = onSerial<&GarminUploads::SendWaypts>,
    .SendRoutes = onSerial<&GarminUploads::SendRoutes>,
    .SendTraces = onSerial<&GarminUploads::SendTraces>,
    .StartPvtData = onSerial<&GarminRealTime::StartPvtData>,
    .GetTime = onSerial<&GarminRealTime::GetTime>,
    .getPosition = onSerial<&GarminRealTime::getPosition>,
};

// A Garmin link on the USB device, for the time of one service; every service has a session of its
// own. Whether the device is opened anew first is the service's.
struct UsbConnection {
    explicit UsbConnection(ControlState& control,
                           UsbGarminLink::Answer answer = UsbGarminLink::Answer::stream,
                           std::string_view sendLabel = "Send ")
        : services(control.services),
          lease(control.usb),
          link(control.services, lease, answer, sendLabel) {}

    // Shows the box when there is no session.
    bool inSession(bool opened = true) {
        const bool started = opened && startSession(lease);
        if (!started) {
            services.host.messageBox(text::kSessionFailed, BoxIcon::critical);
        }
        return started;
    }

    Services& services;
    UsbLease lease;
    UsbGarminLink link;
};

template <auto service>
bool onUsb(ControlState& control) {
    UsbConnection usb(control);
    return usb.inSession() && runGarmin(control, usb.link, service);
}

const Family kGarminUsb = {
    .matches = [](const std::string& code) { return code == "GRM_USB"; },
    .identify =
        [](ControlState& control) {
            control.connection.connected = false;
            return onUsb<&GarminIdentification::grmGetAttributesGathered>(control);
        },
    .protocols = garminProtocols,
    .getWaypts = onUsb<&GarminDownloads::getWaypts>,
    .getTracks = onUsb<&GarminDownloads::getTracks>,
    .GetRoutes = onUsb<&GarminDownloads::GetRoutes>,
    .SendWaypts = onUsb<&GarminUploads::SendWaypts>,
    .SendRoutes = onUsb<&GarminUploads::SendRoutes>,
    .SendTraces = onUsb<&GarminUploads::SendTraces>,
    .StartPvtData = onUsb<&GarminRealTime::StartPvtData>,
    .GetTime =
        [](ControlState& control) {
            UsbConnection usb(control, UsbGarminLink::Answer::oneBlock);
            return usb.inSession() ? runGarmin(control, usb.link, &GarminRealTime::GetTime) : 0.0;
        },
    .getPosition =
        [](ControlState& control) {
            // Here alone the device is opened anew first.
            UsbConnection usb(control, UsbGarminLink::Answer::eitherPipe, "Get Position ");
            return usb.inSession(usb.lease.reopen())
                       ? runGarmin(control, usb.link, &GarminRealTime::getPosition)
                       : std::string();
        },
};

StorageTransfers storageTransfers(ControlState& control) {
    return {control.services, control.storage, control.connection};
}

const Family kGarminStorage = {
    .matches = [](const std::string& code) { return code == "GRM_USB_GPX"; },
    .identify =
        [](ControlState& control) {
            return control.storage.identify(control.services, control.connection);
        },
    .protocols = [](ControlState& control) { return storageProtocols(control.connection); },
    .getWaypts = [](ControlState& control) { return storageTransfers(control).getWaypts(); },
    .getTracks = [](ControlState& control) { return storageTransfers(control).getTracks(); },
    .GetRoutes = [](ControlState& control) { return storageTransfers(control).GetRoutes(); },
    .SendWaypts =
        [](ControlState& control) {
            return storageTransfers(control).SendWaypts(control.garmin.waypoints,
                                                        control.uploadPath);
        },
    .SendRoutes =
        [](ControlState& control) {
            return storageTransfers(control).SendRoutes(control.garmin.routes, control.uploadPath);
        },
    .SendTraces =
        [](ControlState& control) {
            return storageTransfers(control).SendTraces(control.garmin.tracks, control.uploadPath);
        },
};

// A Magellan receiver on the serial port, for the time of one service.
struct MagellanConnection {
    explicit MagellanConnection(ControlState& control)
        : lease(control.port),
          magellan(control.services, lease, control.connection, control.nmea, control.magellan) {}

    PortLease lease;
    Magellan magellan;
};

template <bool (Magellan::*service)()>
bool onMagellan(ControlState& control) {
    return (MagellanConnection(control).magellan.*service)();
}

const Family kMagellan = {
    .matches = [](const std::string& code) { return code == "MGN"; },
    .identify = onMagellan<&Magellan::mgnVersion>,
    .refreshIdent = onMagellan<&Magellan::mgnVersion>,
    .protocols = [](ControlState&) { return std::string(nmeatext::kMgnProtocols); },
    .getWaypts = onMagellan<&Magellan::mgnGetWaypoints>,
    .getTracks = onMagellan<&Magellan::mgnGetTracks>,
    .GetRoutes = onMagellan<&Magellan::mgnGetRoutes>,
    .SendWaypts =
        [](ControlState& control) {
            MagellanConnection(control).magellan.mgnSendWaypoints(control.garmin.waypoints);
            return false;
        },
    .SendRoutes =
        [](ControlState& control) {
            MagellanConnection(control).magellan.mgnSendRoutes(control.garmin.routes);
            return false;
        },
    .SendTraces =
        [](ControlState& control) {
            MagellanConnection(control).magellan.mgnSendTracks(control.garmin.tracks);
            return false;
        },
    .StartPvtData =
        [](ControlState& control) {
            MagellanConnection(control).magellan.mgnPvt();
            return false;
        },
};

// An MLR receiver on the serial port, for the time of one service.
struct MlrConnection {
    explicit MlrConnection(ControlState& control)
        : lease(control.port),
          mlr(control.services, lease, control.connection, control.nmea, control.mlr) {}

    PortLease lease;
    Mlr mlr;
};

template <bool (Mlr::*service)()>
bool onMlr(ControlState& control) {
    return (MlrConnection(control).mlr.*service)();
}

const Family kMlr = {
    .matches = [](const std::string& code) { return code == "MLR"; },
    .identify = onMlr<&Mlr::mlrIdent>,
    .refreshIdent = onMlr<&Mlr::mlrIdent>,
    .protocols = [](ControlState&) { return std::string(nmeatext::kMlrProtocols); },
    .getWaypts = onMlr<&Mlr::mlrGetWaypoints>,
    .getTracks = onMlr<&Mlr::mlrGetTracks>,
    .GetRoutes = onMlr<&Mlr::mlrGetRoutes>,
    .SendWaypts =
        [](ControlState& control) {
            MlrConnection(control).mlr.mlrSendWaypoints(control.garmin.waypoints);
            return false;
        },
    .SendRoutes =
        [](ControlState& control) {
            MlrConnection(control).mlr.mlrSendRoutes(control.garmin.routes);
            return false;
        },
    .SendTraces =
        [](ControlState& control) {
            MlrConnection(control).mlr.mlrSendTracks();
            return false;
        },
};

const Family* const kFamilies[] = {&kGarminSerial, &kGarminUsb, &kGarminStorage, &kMagellan, &kMlr};

const Family kUnknown = {};

}  // namespace

const Family& familyOf(const std::string& protocolCode) {
    const auto* const row =
        std::find_if(std::begin(kFamilies), std::end(kFamilies),
                     [&](const Family* each) { return each->matches(protocolCode); });
    return row == std::end(kFamilies) ? kUnknown : **row;
}

}  // namespace marlune
