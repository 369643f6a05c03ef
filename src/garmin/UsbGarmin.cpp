#include "garmin/UsbGarmin.h"

#include <utility>

#include "garmin/Downloads.h"
#include "garmin/Identification.h"
#include "garmin/Messages.h"
#include "garmin/RealTime.h"
#include "garmin/Uploads.h"
#include "garmin/link/UsbGarminLink.h"
#include "usb/UsbSession.h"

namespace marlune {
namespace {

using Answer = UsbGarminLink::Answer;

// A session with the unit, for the time of one service, and the procedures over it.
class Session {
public:
    // running: counts the sessions.
    Session(ControlServices& services, GarminUnit& unit, int& running,
            Answer answer = Answer::stream, std::string_view sendLabel = "Send ")
        : services_(services),
          unit_(unit),
          running_(running),
          lease_(services.usb),
          link_(services, lease_, answer, sendLabel) {
        ++running_;
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() { --running_; }

    // False, after a box, when there is no session; then the service is over.
    bool start(TransferKind kind, TransferDirection direction = TransferDirection::download) {
        if (begins()) {
            return true;
        }
        TransferLog(services_, kind, direction).end(Ending::noSession);
        return false;
    }

    // The same without a transfer. `opened`: whether there is a device to begin it on.
    bool begins(bool opened = true) {
        const bool started = opened && startSession(lease_);
        if (!started) {
            services_.host.messageBox(text::kSessionFailed, BoxIcon::critical);
        }
        return started;
    }

    bool reopen() { return lease_.reopen(); }

    template <class Procedures>
    Procedures run() {
        return {services_, link_, services_.connection, unit_};
    }

private:
    ControlServices& services_;
    GarminUnit& unit_;
    int& running_;
    UsbLease lease_;
    UsbGarminLink link_;
};

}  // namespace

Family::Opening UsbGarmin::open() {
    const std::string path = services().usb.findDevicePath();
    if (path.empty()) {
        services().usb.close();
        return Opening::absent;
    }
    services().reports.connection.device = path;
    const bool opened = services().usb.open();
    services().trace.traceLine(text::kUsbPath + path);
    services().trace.traceLine(opened ? text::kUsbOpened : text::kNoUsbFile);
    if (opened && connection().protocolCode == "GRM_USB_GPX") {
        connection().protocolCode = "GRM_USB";  // the unit was a drive before
    }
    return opened ? Opening::opened : Opening::failed;
}

bool UsbGarmin::identify() {
    connection().connected = false;
    Session session(services(), unit(), sessions_);
    if (!session.begins()) {
        services().reports.connection.outcome = ConnectionOutcome::silent;
        return false;
    }
    return session.run<GarminIdentification>().grmGetAttributesGathered();
}

bool UsbGarmin::getWaypts() {
    Session session(services(), unit(), sessions_);
    return session.start(TransferKind::waypoints) && session.run<GarminDownloads>().getWaypts();
}

bool UsbGarmin::getTracks() {
    Session session(services(), unit(), sessions_);
    return session.start(TransferKind::tracks) && session.run<GarminDownloads>().getTracks();
}

bool UsbGarmin::GetRoutes() {
    Session session(services(), unit(), sessions_);
    return session.start(TransferKind::routes) && session.run<GarminDownloads>().GetRoutes();
}

bool UsbGarmin::SendWaypts(const Upload<Waypoint>& upload) {
    Session session(services(), unit(), sessions_);
    return session.start(TransferKind::waypoints, TransferDirection::upload) &&
           session.run<GarminUploads>().SendWaypts(upload);
}

bool UsbGarmin::SendRoutes(const Upload<Route>& upload) {
    Session session(services(), unit(), sessions_);
    return session.start(TransferKind::routes, TransferDirection::upload) &&
           session.run<GarminUploads>().SendRoutes(upload);
}

bool UsbGarmin::SendTraces(const Upload<TrackItem>& upload) {
    Session session(services(), unit(), sessions_);
    return session.start(TransferKind::tracks, TransferDirection::upload) &&
           session.run<GarminUploads>().SendTraces(upload);
}

bool UsbGarmin::StartPvtData() {
    Session session(services(), unit(), sessions_);
    return session.start(TransferKind::realTime) &&
           session.run<GarminRealTime>().StartPvtData(streams_);
}

void UsbGarmin::endRealTime() {
    if (std::exchange(streams_, false)) {
        Session(services(), unit(), sessions_).run<GarminRealTime>().endOutput();
    }
}

double UsbGarmin::GetTime() {
    Session session(services(), unit(), sessions_, Answer::oneBlock);
    return session.start(TransferKind::time) ? session.run<GarminRealTime>().GetTime() : 0;
}

std::string UsbGarmin::getPosition() {
    // Here alone the device is opened anew first, unless a transfer runs on it.
    const bool isInUse = sessions_ > 0 && services().usb.isOpen();
    Session session(services(), unit(), sessions_, Answer::eitherPipe, "Get Position ");
    if (!session.begins(isInUse || session.reopen())) {
        TransferLog(services(), TransferKind::position, TransferDirection::download)
            .end(Ending::noSession);
        return {};
    }
    return session.run<GarminRealTime>().getPosition();
}

}  // namespace marlune
