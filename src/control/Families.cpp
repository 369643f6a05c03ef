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

GarminDownloads garminDownloads(ControlState& control, GarminLink& link) {
    return {control.services, link, control.connection, control.garmin};
}

GarminUploads garminUploads(ControlState& control, GarminLink& link) {
    return {control.services, link, control.garmin};
}

GarminRealTime garminRealTime(ControlState& control, GarminLink& link) {
    return {control.services, link, control.connection};
}

std::string garminProtocols(ControlState& control) {
    return control.garmin.capabilities().getProtocoles();
}

const Family kGarminSerial = {
    .matches =
        [](const std::string& code) { return contains(code, "GRM") && !contains(code, "GRM_USB"); },
    .identify =
        [](ControlState& control) {
            // Other codes with these letters take the same transfers but identify nothing.
            if (control.connection.protocolCode != "GRM") {
                return true;
            }
            SerialConnection serial(control);
            return GarminIdentification(control.services, serial.link, control.connection,
                                        control.garmin)
                .grmGetAttributes();
        },
    .protocols = garminProtocols,
    .getWaypts =
        [](ControlState& control) {
            SerialConnection serial(control);
            return garminDownloads(control, serial.link).getWaypts();
        },
    .getTracks =
        [](ControlState& control) {
            SerialConnection serial(control);
            return garminDownloads(control, serial.link).getTracks();
        },
    .GetRoutes =
        [](ControlState& control) {
            SerialConnection serial(control);
            return garminDownloads(control, serial.link).GetRoutes();
        },
    .getProximites =
        [](ControlState& control) {
            SerialConnection serial(control);
            return garminDownloads(control, serial.link).getProximites();
        },
    .SendWaypts =
        [](ControlState& control) {
            SerialConnection serial(control);
            return garminUploads(control, serial.link).SendWaypts();
        },
    .SendRoutes =
        [](ControlState& control) {
            SerialConnection serial(control);
            return garminUploads(control, serial.link).SendRoutes();
        },
    .SendTraces =
        [](ControlState& control) {
            SerialConnection serial(control);
            return garminUploads(control, serial.link).SendTraces();
        },
    .StartPvtData =
        [](ControlState& control) {
            SerialConnection serial(control);
            return garminRealTime(control, serial.link).StartPvtData();
        },
    .GetTime =
        [](ControlState& control) {
            SerialConnection serial(control);
            return garminRealTime(control, serial.link).GetTime();
        },
    .getPosition =
        [](ControlState& control) {
            SerialConnection serial(control);
            return garminRealTime(control, serial.link).getPosition();
        },
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

const Family kGarminUsb = {
    .matches = [](const std::string& code) { return code == "GRM_USB"; },
    .identify =
        [](ControlState& control) {
            UsbConnection usb(control);
            control.connection.connected = false;
            return usb.inSession() && GarminIdentification(control.services, usb.link,
                                                           control.connection, control.garmin)
                                          .grmGetAttributesGathered();
        },
    .protocols = garminProtocols,
    .getWaypts =
        [](ControlState& control) {
            UsbConnection usb(control);
            return usb.inSession() && garminDownloads(control, usb.link).getWaypts();
        },
    .getTracks =
        [](ControlState& control) {
            UsbConnection usb(control);
            return usb.inSession() && garminDownloads(control, usb.link).getTracks();
        },
    .GetRoutes =
        [](ControlState& control) {
            UsbConnection usb(control);
            return usb.inSession() && garminDownloads(control, usb.link).GetRoutes();
        },
    .SendWaypts =
        [](ControlState& control) {
            UsbConnection usb(control);
            return usb.inSession() && garminUploads(control, usb.link).SendWaypts();
        },
    .SendRoutes =
        [](ControlState& control) {
            UsbConnection usb(control);
            return usb.inSession() && garminUploads(control, usb.link).SendRoutes();
        },
    .SendTraces =
        [](ControlState& control) {
            UsbConnection usb(control);
            return usb.inSession() && garminUploads(control, usb.link).SendTraces();
        },
    .StartPvtData =
        [](ControlState& control) {
            UsbConnection usb(control);
            return usb.inSession() && garminRealTime(control, usb.link).StartPvtData();
        },
    .GetTime =
        [](ControlState& control) {
            UsbConnection usb(control, UsbGarminLink::Answer::oneBlock);
            return usb.inSession() ? garminRealTime(control, usb.link).GetTime() : 0.0;
        },
    .getPosition =
        [](ControlState& control) {
            // Here alone the device is opened anew first.
            UsbConnection usb(control, UsbGarminLink::Answer::eitherPipe, "Get Position ");
            return usb.inSession(usb.lease.reopen())
                       ? garminRealTime(control, usb.link).getPosition()
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

bool identifyMagellan(ControlState& control) {
    return MagellanConnection(control).magellan.mgnVersion();
}

const Family kMagellan = {
    .matches = [](const std::string& code) { return code == "MGN"; },
    .identify = identifyMagellan,
    .refreshIdent = identifyMagellan,
    .protocols = [](ControlState&) { return std::string("Protocole NMEA propriétaire MAGELLAN"); },
    .getWaypts =
        [](ControlState& control) {
            return MagellanConnection(control).magellan.mgnGetWaypoints();
        },
    .getTracks =
        [](ControlState& control) { return MagellanConnection(control).magellan.mgnGetTracks(); },
    .GetRoutes =
        [](ControlState& control) { return MagellanConnection(control).magellan.mgnGetRoutes(); },
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

bool identifyMlr(ControlState& control) {
    return MlrConnection(control).mlr.mlrIdent();
}

const Family kMlr = {
    .matches = [](const std::string& code) { return code == "MLR"; },
    .identify = identifyMlr,
    .refreshIdent = identifyMlr,
    .protocols = [](ControlState&) { return std::string("Protocole NMEA propriétaire MLR"); },
    .getWaypts = [](ControlState& control) { return MlrConnection(control).mlr.mlrGetWaypoints(); },
    .getTracks = [](ControlState& control) { return MlrConnection(control).mlr.mlrGetTracks(); },
    .GetRoutes = [](ControlState& control) { return MlrConnection(control).mlr.mlrGetRoutes(); },
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
