#include "marlune/GpsControl.h"

#include "control/Connection.h"
#include "control/ControlState.h"
#include "control/Families.h"
#include "control/Transfers.h"
#include "nmea/NmeaListener.h"

namespace marlune {

// Every member keeps the state alive until it returns: a handler may destroy the control meanwhile.
struct GpsControl::Impl : ControlState {
    using ControlState::ControlState;
};

GpsControl::GpsControl(Host& host, GpsControlEvents& events)
    : GpsControl(host, events, makeSystemSerialPort(host), nullptr) {
    impl_->usb.use(makeSystemUsbDevice(impl_->trace));
}

GpsControl::GpsControl(Host& host, GpsControlEvents& events, std::unique_ptr<SerialPort> port,
                       std::unique_ptr<UsbDevice> usb)
    : impl_(std::make_shared<Impl>(host, events, std::move(port))) {
    impl_->usb.use(std::move(usb));
}

GpsControl::~GpsControl() {
    impl_->port.close();
    impl_->usb.close();
}

double GpsControl::GetTime() {
    const auto control = impl_;
    const auto procedure = familyOf(control->connection.protocolCode).GetTime;
    if (procedure == nullptr) {
        showNotAvailable(control->host);
        return 0;
    }
    return procedure(*control);
}

void GpsControl::SetDebug(const std::string& value) {
    const bool on = value.size() == 2 && (value[0] == 'O' || value[0] == 'o') &&
                    (value[1] == 'N' || value[1] == 'n');
    impl_->trace.setDebug(on);
}

void GpsControl::SetGpsMark(const std::string& value) {
    setGpsMark(*impl_, value);
}

bool GpsControl::StartPvtData() {
    const auto control = impl_;
    const Service procedure = familyOf(control->connection.protocolCode).StartPvtData;
    if (procedure == nullptr) {
        showNotAvailable(control->host);
        return false;
    }
    return procedure(*control);
}

bool GpsControl::gpsConnect() {
    const auto control = impl_;
    return connectReceiver(*control);
}

void GpsControl::gpsDisconnect() {
    const auto control = impl_;
    disconnectReceiver(*control);
}

bool GpsControl::getTracks() {
    const auto control = impl_;
    return runDownload(*control, kTrackDownload);
}

bool GpsControl::getWaypts() {
    const auto control = impl_;
    return runDownload(*control, kWaypointDownload);
}

bool GpsControl::GetRoutes() {
    const auto control = impl_;
    return runDownload(*control, kRouteDownload);
}

std::string GpsControl::getIdent() {
    const auto control = impl_;
    const Service refresh = familyOf(control->connection.protocolCode).refreshIdent;
    if (refresh != nullptr && control->port.isOpen()) {
        refresh(*control);
    }
    return identText(control->connection);
}

bool GpsControl::getProximites() {
    const auto control = impl_;
    return runProximityDownload(*control);
}

std::string GpsControl::getPosition() {
    const auto control = impl_;
    const auto procedure = familyOf(control->connection.protocolCode).getPosition;
    if (procedure == nullptr) {
        showNotAvailable(control->host);
        return {};
    }
    return procedure(*control);
}

void GpsControl::setNumPort(numPort n) {
    impl_->port.setNumber(static_cast<std::int32_t>(n));
}

void GpsControl::StopPvtData() {
    impl_->connection.realTimeRunning = false;
    impl_->trace.traceLine("StopPvtdata");
}

void GpsControl::StopTransfert() {
    const auto control = impl_;
    stopTransfert(*control);
}

bool GpsControl::SendWaypts(const std::string& Fic) {
    const auto control = impl_;
    return uploadWaypoints(*control, Fic);
}

std::string GpsControl::getProtocoles() {
    const auto control = impl_;
    const auto protocols = familyOf(control->connection.protocolCode).protocols;
    return protocols == nullptr ? std::string() : protocols(*control);
}

bool GpsControl::SendRoutes(const std::string& Fic) {
    const auto control = impl_;
    return uploadRoutes(*control, Fic);
}

bool GpsControl::SendTraces(const std::string& Fic) {
    const auto control = impl_;
    return uploadTracks(*control, Fic);
}

bool GpsControl::StartNMEA(const std::string& NMEACode, std::int16_t Delai) {
    const auto control = impl_;
    return startNmea(
        control->services, control->port, control->nmea, [&] { closeDevice(*control); }, NMEACode,
        Delai);
}

void GpsControl::StopNMEA() {
    impl_->nmea.stopRequested = true;
}

bool GpsControl::ResetComBuffers() {
    impl_->port.ResetComBuffers();
    // False in every case: callers do not read success from it.
    return false;
}

const Records& GpsControl::records() const {
    return impl_->records;
}

const TransferReport& GpsControl::lastTransfer() const {
    return impl_->reports.transfer;
}

const ConnectionReport& GpsControl::lastConnection() const {
    return impl_->reports.connection;
}

}  // namespace marlune
