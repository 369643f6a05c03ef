#include "marlune/GpsControl.h"

#include <utility>

#include "base/RunTimeError.h"
#include "control/Connection.h"
#include "control/ControlFactory.h"
#include "control/ControlState.h"
#include "garmin/Messages.h"
#include "garmin/UploadFiles.h"
#include "garmin/values/Fichier.h"
#include "nmea/NmeaListener.h"

namespace marlune {

struct GpsControl::Impl : ControlState {
    using ControlState::ControlState;
};

// A member in progress. It keeps the state alive until it returns: a handler may destroy the
// control meanwhile.
class GpsControl::Running {
public:
    explicit Running(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) {
        impl_->host.memberBegins();
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() { impl_->host.memberEnds(); }

    Impl& operator*() const { return *impl_; }
    Impl* operator->() const { return impl_.get(); }

private:
    std::shared_ptr<Impl> impl_;
};

GpsControl::GpsControl(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) {}

GpsControl::GpsControl(Host& host, GpsControlEvents& events)
    : impl_(std::make_shared<Impl>(host, events, makeSystemSerialPort(host))) {
    impl_->usb.use(makeSystemUsbDevice(impl_->trace));
}

std::unique_ptr<GpsControl> ControlFactory::make(Host& host, GpsControlEvents& events,
                                                 std::unique_ptr<SerialPort> port,
                                                 std::unique_ptr<UsbDevice> usb) {
    auto impl = std::make_shared<GpsControl::Impl>(host, events, std::move(port));
    impl->usb.use(std::move(usb));
    return std::unique_ptr<GpsControl>(new GpsControl(std::move(impl)));
}

GpsControl::~GpsControl() {
    abandonDevice(*impl_);
}

double GpsControl::GetTime() {
    const Running control(impl_);
    return control->family().GetTime();
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
    const Running control(impl_);
    return control->family().StartPvtData();
}

bool GpsControl::gpsConnect() {
    const Running control(impl_);
    return connectReceiver(*control);
}

void GpsControl::gpsDisconnect() {
    const Running control(impl_);
    disconnectReceiver(*control);
}

namespace {

// What the receiver does not have is not asked of it; then the line is emptied for the download.
bool beginDownload(ControlState& control, Member member, TransferKind kind, const char* traceText) {
    if (!control.family().offers(member)) {
        return control.family().notOffered(kind);
    }
    control.trace.traceLine(traceText);
    control.port.ResetComBuffers();
    return true;
}

// What the members of an upload differ in.
template <class Record>
struct UploadRow {
    Member member;
    TransferKind kind;
    const char* traceText;
    FileReading (*read)(Host&, std::string_view path, const UploadFormat&, std::vector<Record>&);
};

// Tracks are long.
FileReading readTracksUnderHourglass(Host& host, std::string_view path, const UploadFormat& format,
                                     std::vector<TrackItem>& items) {
    host.setMousePointer(MousePointer::hourglass);
    FileReading reading = readTrackFile(host, path, format, items);
    host.setMousePointer(MousePointer::normal);
    return reading;
}

constexpr UploadRow<Waypoint> kWaypointUpload = {Member::SendWaypts, TransferKind::waypoints,
                                                 "SendWaypoints", readWaypointFile};
constexpr UploadRow<Route> kRouteUpload = {Member::SendRoutes, TransferKind::routes, "SendRoutes",
                                           readRouteFile};
constexpr UploadRow<TrackItem> kTrackUpload = {Member::SendTraces, TransferKind::tracks,
                                               "SendTraces", readTracksUnderHourglass};

// The records of the host's file. Not good, after a box where one is due, when there is nothing to
// send or nobody to send it to.
template <class Record>
Upload<Record> readUpload(ControlState& control, const UploadRow<Record>& row,
                          const std::string& path) {
    Upload<Record> upload;
    upload.path = path;
    if (!control.family().offers(row.member)) {
        (void)control.family().notOffered(row.kind, TransferDirection::upload);
        return upload;
    }
    control.trace.traceLine(row.traceText);
    const bool fileThere = Fichier{path}.Existant(control.host);
    if (fileThere) {
        upload.reading =
            row.read(control.host, path, control.family().uploadFormat(), upload.records);
    }
    if (!upload.reading) {
        TransferLog log(control.services, row.kind, TransferDirection::upload);
        reportReading(log, upload.reading);
        log.end(fileThere && isReadable(upload.reading) ? Ending::nothingThere : Ending::fileError);
    }
    return upload;
}

// Runs an upload and shows the run-time error that ends it.
template <class Send>
bool trapped(ControlState& control, const char* errorText, const Send& send) {
    try {
        return send();
    } catch (const RunTimeError& error) {
        control.host.messageBox(errorText + std::to_string(error.number()) + " " + error.what(),
                                BoxIcon::critical);
        return false;
    }
}

}  // namespace

bool GpsControl::getTracks() {
    const Running control(impl_);
    return beginDownload(*control, Member::getTracks, TransferKind::tracks, "GetTracks") &&
           control->family().getTracks();
}

bool GpsControl::getWaypts() {
    const Running control(impl_);
    return beginDownload(*control, Member::getWaypts, TransferKind::waypoints, "GetWaypoints") &&
           control->family().getWaypts();
}

bool GpsControl::GetRoutes() {
    const Running control(impl_);
    return beginDownload(*control, Member::GetRoutes, TransferKind::routes, "GetRoutes") &&
           control->family().GetRoutes();
}

std::string GpsControl::getIdent() {
    const Running control(impl_);
    if (control->port.isOpen()) {
        control->family().refreshIdent();
    }
    return identText(control->connection);
}

bool GpsControl::getProximites() {
    const Running control(impl_);
    return control->family().getProximites();
}

std::string GpsControl::getPosition() {
    const Running control(impl_);
    return control->family().getPosition();
}

void GpsControl::setNumPort(numPort n) {
    impl_->port.setNumber(static_cast<std::int32_t>(n));
}

void GpsControl::StopPvtData() {
    impl_->connection.realTimeRunning = false;
    impl_->trace.traceLine("StopPvtdata");
}

void GpsControl::StopTransfert() {
    const Running control(impl_);
    control->family().StopTransfert();
}

bool GpsControl::SendWaypts(const std::string& Fic) {
    const Running control(impl_);
    return trapped(*control, text::kWaypointUploadError, [&] {
        const auto upload = readUpload(*control, kWaypointUpload, Fic);
        return upload.reading && control->family().SendWaypts(upload);
    });
}

std::string GpsControl::getProtocoles() {
    return impl_->family().getProtocoles();
}

bool GpsControl::SendRoutes(const std::string& Fic) {
    const Running control(impl_);
    return trapped(*control, text::kRouteUploadError, [&] {
        const auto upload = readUpload(*control, kRouteUpload, Fic);
        return upload.reading && control->family().SendRoutes(upload);
    });
}

bool GpsControl::SendTraces(const std::string& Fic) {
    const Running control(impl_);
    return trapped(*control, text::kTrackUploadError, [&] {
        const auto upload = readUpload(*control, kTrackUpload, Fic);
        return upload.reading && control->family().SendTraces(upload);
    });
}

bool GpsControl::StartNMEA(const std::string& NMEACode, std::int16_t Delai) {
    const Running control(impl_);
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
    impl_->dates.apply(impl_->records, impl_->reports.transfersBegun);
    return impl_->records;
}

void GpsControl::setDateReference(std::optional<double> reference) {
    impl_->dates.setReference(reference);
}

int GpsControl::movedDates() const {
    impl_->dates.apply(impl_->records, impl_->reports.transfersBegun);
    return impl_->dates.moved();
}

const TransferReport& GpsControl::lastTransfer() const {
    return impl_->reports.transfer;
}

const ConnectionReport& GpsControl::lastConnection() const {
    return impl_->reports.connection;
}

}  // namespace marlune
