#include "cli/OneShot.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <system_error>

#include "garmin/values/NumberText.h"
#include "words/Advice.h"
#include "words/Phrases.h"

namespace marlune::cli {
namespace {

std::optional<GpxKind> sentKind(Action action) {
    switch (action) {
        case Action::sendWaypoints:
            return GpxKind::waypoints;
        case Action::sendRoutes:
            return GpxKind::routes;
        case Action::sendTracks:
            return GpxKind::tracks;
        default:
            return std::nullopt;
    }
}

ExitStatus statusOf(words::Success success) {
    switch (success) {
        case words::Success::whole:
            return kDone;
        case words::Success::partly:
            return kIncomplete;
        case words::Success::none:
            break;
    }
    return kFailed;
}

std::optional<RecordFile> recordFile(const Options& options, const words::Speech& say) {
    return options.file.empty()
               ? std::nullopt
               : std::optional<RecordFile>(std::in_place, options.file, options.format, say);
}

}  // namespace

OneShot::OneShot(const Options& options, HostServices& host, Output& records, Output& messages)
    : options_(options),
      host_(host),
      records_(records),
      messages_(messages),
      speech_(options.language),
      recordFile_(recordFile(options, speech_)),
      printer_(records, messages, recordFile_ ? &*recordFile_ : nullptr, [this] { stop_.act(); }),
      control_(host, printer_),
      stop_(control_, host, records) {
    host.onBox = [this](const std::string& text, BoxIcon /*icon*/) {
        printer_.message(text);
        stop_.act();
    };
    host.onProcessEvents = [this] { stop_.act(); };
    control_.setDateReference(options.dateReference);
    if (options.action == Action::pvt) {
        printer_.onRecord = [this](const surface::Event& event) { return follow(event); };
        followed_.name = "Marlune";
    }
}

ExitStatus OneShot::run() {
    prepareFile();
    if (!options_.link.empty()) {
        feed_ = std::make_unique<LiveFeed>(options_.link);
    }
    const bool connected = connect();
    const bool performs = connected && maySend();
    if (performs) {
        perform();
    }
    stop_.disconnect();
    ExitStatus status = performs ? finish() : kFailed;
    if (records_.error() != 0) {
        say(speech_(words::phrase::kColon, {speech_(words::phrase::kStandardOutput),
                                            std::generic_category().message(records_.error())}));
    }
    return records_.broken() ? kFailed : status;
}

void OneShot::prepareFile() {
    if (const auto kind = sentKind(options_.action)) {
        uploadFile_ = std::make_unique<words::UploadFile>(options_.sendFile, *kind, speech_);
        for (const std::string& remark : uploadFile_->remarks()) {
            say(speech_(words::phrase::kRemark, {options_.sendFile, remark}));
        }
    }
}

bool OneShot::connect() {
    // The listener opens the port by itself; what it hears need not be a receiver of any family.
    if (options_.action == Action::nmea) {
        stop_.listenOnly();
        return true;
    }
    constexpr double kPatientFor = 1.8;
    const double start = host_.secondsClock();
    host_.onWait = [this, start, told = false]() mutable {
        const ConnectionReport& report = control_.lastConnection();
        if (!told && report.systemError == 0 && host_.secondsClock() - start > kPatientFor) {
            told = true;
            printer_.message(speech_(words::phrase::kAsking, {report.device}));
        }
        return false;
    };
    const bool connected = control_.gpsConnect();
    host_.onWait = nullptr;
    if (connected) {
        tellCapabilities();
    } else if (!stop_.requested()) {
        explainFailure();
    }
    return connected;
}

void OneShot::explainFailure() {
    for (const std::string& text :
         words::adviceOn(control_.lastConnection(), options_.family(), speech_)) {
        say(text);
    }
    say(speech_(words::phrase::kMoreHelp));
}

void OneShot::tellCapabilities() {
    if (control_.lastConnection().damaged > 0) {
        say(speech_(words::phrase::kDamagedIdentity));
    }
    switch (control_.lastConnection().capabilities) {
        case CapabilitySource::announced:
            if (options_.action == Action::ident) {
                say(speech_(words::phrase::kAnnounced));
            }
            break;
        case CapabilitySource::table:
            say(speech_(words::phrase::kFromTable));
            break;
        case CapabilitySource::generic:
            say(speech_(words::phrase::kGeneric));
            break;
        case CapabilitySource::none:
            break;
    }
}

// What is sent in the wrong record type may spoil what a receiver holds.
bool OneShot::maySend() {
    const ConnectionReport& report = control_.lastConnection();
    const bool guessed = report.capabilities == CapabilitySource::generic || report.damaged > 0;
    if (uploadFile_ != nullptr && guessed && !options_.trustTable) {
        say(speech_(words::phrase::kNotOnAGuess));
        return false;
    }
    return true;
}

void OneShot::perform() {
    switch (options_.action) {
        case Action::host:
        case Action::ports:
        case Action::find:
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
            control_.SendWaypts(uploadFile_->path());
            break;
        case Action::sendRoutes:
            control_.SendRoutes(uploadFile_->path());
            break;
        case Action::sendTracks:
            control_.SendTraces(uploadFile_->path());
            break;
        case Action::time:
            printTime();
            break;
        case Action::position:
            printPosition();
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
    if (options_.traits().routesNeedWaypoints) {
        printer_.mute(true);
        control_.getWaypts();
        printer_.mute(false);
    }
    if (!stop_.requested()) {
        control_.GetRoutes();
    }
}

void OneShot::printTime() {
    if (const double time = control_.GetTime(); time != 0) {
        printer_.print(host_.dateText(time));
    }
}

// The control's own text has the receiver's radians.
void OneShot::printPosition() {
    const std::string text = control_.getPosition();
    const auto& fix = control_.records().fix;
    if (text.empty() || !fix) {
        return;
    }
    constexpr int kDecimals = 6;
    const auto degrees = [&](double angle) {
        return numberText(roundHalfEven(angle, kDecimals), options_.decimalSeparator);
    };
    printer_.print(text.substr(0, text.find("Latitude: ")) + "Latitude: " + degrees(fix->latitude) +
                   " - Longitude: " + degrees(fix->longitude));
}

ExitStatus OneShot::finish() {
    if (options_.action == Action::ident) {
        return kDone;
    }
    const bool linesSent = uploadFile_ == nullptr || uploadFile_->keepsLines();
    const words::Verdict verdict = words::judge(control_.lastTransfer(), speech_, linesSent);
    const bool saved = saveFile(verdict.isWhole());
    if (printer_.notSentences() > 0) {
        say(speech_(words::phrase::kNoSentences, {std::to_string(printer_.notSentences())}));
    }
    if (!verdict.isWhole() || verdict.doubtful) {
        say(verdict.text);
    } else if (messages_.isTerminal()) {
        printer_.message(verdict.text);
    }
    return saved ? statusOf(verdict.success) : kFailed;
}

bool OneShot::saveFile(bool whole) {
    if (!recordFile_) {
        return true;
    }
    try {
        const Records records = delivered();
        for (const std::string& remark :
             recordFile_->save(records, fileHead(), whole, options_.keepPartial)) {
            say(remark);
        }
        if (const int moved = control_.movedDates(); moved > 0) {
            say(speech_(words::phrase::kMovedDates, {std::to_string(moved), recordFile_->path()}));
        }
    } catch (const std::system_error& error) {
        say(recordFile_->path() + ": " + error.code().message());
        return false;
    }
    return true;
}

// Another transfer may have gone before: that of the waypoints which routes name.
Records OneShot::delivered() const {
    const Records& all = control_.records();
    Records records;
    switch (options_.action) {
        case Action::waypoints:
            records.waypoints = all.waypoints;
            break;
        case Action::tracks:
            records.tracks = all.tracks;
            break;
        case Action::routes:
            records.routes = all.routes;
            break;
        case Action::proximities:
            records.proximities = all.proximities;
            break;
        case Action::pvt:
            records.tracks = {followed_};
            break;
        default:
            break;
    }
    return records;
}

// The control is disconnected: its text is what the identification learnt.
FileHead OneShot::fileHead() {
    FileHead head;
    const std::string ident = control_.getIdent();
    head.source = ident.substr(std::min(ident.find("GPSId:"), ident.size()));
    head.time = std::floor(
        std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count());
    return head;
}

bool OneShot::follow(const surface::Event& event) {
    const auto& fix = control_.records().fix;
    if (event.name != "PvtData" || !fix) {
        return options_.sentences;
    }
    constexpr int kTwoDimensions = 2;
    // Without a fix the position is the one before.
    if (fix->quality.value_or(kTwoDimensions) >= kTwoDimensions) {
        TrackPointRecord point;
        point.latitude = fix->latitude;
        point.longitude = fix->longitude;
        point.altitude = fix->altitude;
        point.time = fix->time;
        point.segmentStart = followed_.points.empty();
        if (recordFile_) {
            followed_.points.push_back(point);
        }
    }
    if (feed_) {
        feed_->say(*fix);
    }
    if (options_.sentences) {
        records_.write(LiveFeed::sentences(*fix));
    }
    return options_.sentences;
}

void OneShot::say(const std::string& text) {
    printer_.message("marlune: " + text);
}

}  // namespace marlune::cli
