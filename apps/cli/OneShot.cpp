#include "cli/OneShot.h"

#include <exception>
#include <system_error>

namespace marlune::cli {

OneShot::OneShot(const Options& options, HostServices& host, Output& records, Output& messages)
    : options_(options),
      host_(host),
      records_(records),
      printer_(records, messages, options.gpxFile.empty() ? nullptr : &gpx_,
               [this] { stop_.act(); }),
      control_(host, printer_),
      stop_(control_, host, records) {
    host.onBox = [this](const std::string& text, BoxIcon icon) { showBox(text, icon); };
    host.onProcessEvents = [this] { stop_.act(); };
}

ExitStatus OneShot::run() {
    prepareFile();
    if (connect()) {
        perform();
    }
    stop_.disconnect();
    saveGpx();
    if (records_.error() != 0) {
        fail("standard output: " + std::generic_category().message(records_.error()));
    }
    return failed_ || records_.broken() ? kFailed : kDone;
}

void OneShot::prepareFile() {
    switch (options_.action) {
        case Action::sendWaypoints:
            file_ = std::make_unique<UploadFile>(options_.sendFile, GpxKind::waypoints);
            break;
        case Action::sendRoutes:
            file_ = std::make_unique<UploadFile>(options_.sendFile, GpxKind::routes);
            break;
        case Action::sendTracks:
            file_ = std::make_unique<UploadFile>(options_.sendFile, GpxKind::tracks);
            break;
        default:
            break;
    }
}

bool OneShot::connect() {
    // The listener opens the port by itself; what it hears need not be a receiver of any family.
    if (options_.action == Action::nmea) {
        stop_.listenOnly();
        return true;
    }
    const bool connected = control_.gpsConnect();
    if (!connected && !stop_.requested()) {
        fail("no receiver is connected");
    }
    return connected;
}

void OneShot::perform() {
    switch (options_.action) {
        case Action::host:
            break;
        case Action::ident:
            printer_.print(control_.getIdent());
            printer_.print(control_.getProtocoles());
            break;
        case Action::waypoints:
            control_.getWaypts();
            break;
        case Action::tracks:
            control_.getTracks();
            break;
        case Action::routes:
            getRoutes();
            break;
        case Action::proximities:
            control_.getProximites();
            break;
        case Action::sendWaypoints:
            send(&GpsControl::SendWaypts);
            break;
        case Action::sendRoutes:
            send(&GpsControl::SendRoutes);
            break;
        case Action::sendTracks:
            send(&GpsControl::SendTraces);
            break;
        case Action::time:
            printTime();
            break;
        case Action::position:
            if (const std::string line = control_.getPosition(); !line.empty()) {
                printer_.print(line);
            }
            break;
        case Action::pvt:
            control_.StartPvtData();
            break;
        case Action::nmea:
            control_.StartNMEA(options_.nmeaCode, options_.nmeaSeconds);
            break;
    }
}

// Magellan routes name waypoints, which the control must have seen before.
void OneShot::getRoutes() {
    if (options_.family() == "MGN") {
        printer_.mute(true);
        control_.getWaypts();
        printer_.mute(false);
    }
    if (!stop_.requested()) {
        control_.GetRoutes();
    }
}

void OneShot::send(bool (GpsControl::*member)(const std::string&)) {
    (control_.*member)(file_->path());
    // The control says nothing about a file without records.
    if (!printer_.started() && !failed_ && !stop_.requested()) {
        fail(options_.sendFile + ": nothing was sent");
    }
}

void OneShot::printTime() {
    if (const double time = control_.GetTime(); time != 0) {
        printer_.print(host_.dateText(time));
    }
}

// Also what a transfer brought that was cut short, but no empty file in the place of a full one.
void OneShot::saveGpx() {
    if (options_.gpxFile.empty() || (printer_.records() == 0 && failed_)) {
        return;
    }
    try {
        gpx_.save(options_.gpxFile);
    } catch (const std::system_error& error) {
        fail(options_.gpxFile + ": " + error.code().message());
    }
    if (gpx_.leftOut() > 0) {
        printer_.message(options_.gpxFile + ": left out " + std::to_string(gpx_.leftOut()) +
                         " records without a position on earth");
    }
}

void OneShot::showBox(const std::string& text, BoxIcon icon) {
    failed_ = failed_ || icon == BoxIcon::critical || icon == BoxIcon::exclamation;
    printer_.message(text);
    stop_.act();
}

void OneShot::fail(const std::string& text) {
    failed_ = true;
    printer_.message("marlune: " + text);
}

}  // namespace marlune::cli
