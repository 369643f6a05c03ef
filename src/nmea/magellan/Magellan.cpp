#include "nmea/magellan/Magellan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>
#include <variant>

#include "base/CodePage.h"
#include "base/DateText.h"
#include "base/RunTimeError.h"
#include "garmin/values/LineFields.h"
#include "nmea/Messages.h"
#include "nmea/NmeaPacket.h"
#include "nmea/RouteAssembly.h"
#include "nmea/RouteSentence.h"
#include "nmea/Sentence.h"
#include "nmea/SentenceUpload.h"
#include "nmea/Waiting.h"
#include "nmea/magellan/FixSentence.h"
#include "nmea/magellan/TrackSentence.h"
#include "nmea/magellan/WaypointSentence.h"

namespace marlune {
namespace {

// Receivers announce no count: hosts have always been told this one.
constexpr std::int16_t kUnknownCount = 100;
constexpr std::int16_t kSentenceTimeOut = 3;  // seconds

constexpr const char* kEndOfUpload = "$PMGNCMD,END*3D\r\n";
constexpr UploadDialect kUploads = {Coder_MGN, PhraseRouteMGN, kEndOfUpload};

std::string_view lastTwo(std::string_view sentence) {
    return sentence.size() < 2 ? sentence : sentence.substr(sentence.size() - 2);
}

std::int16_t countPoints(const std::vector<TrackItem>& items) {
    return static_cast<std::int16_t>(
        std::count_if(items.begin(), items.end(),
                      [](const TrackItem& item) { return std::holds_alternative<Trace>(item); }));
}

std::string dayText(double date) {
    return formatDate(std::floor(date)).substr(0, 10);
}

}  // namespace

Magellan::Magellan(Services& services, PortLease& port, ConnectionState& connection,
                   NmeaState& nmea, MagellanState& state)
    : services_(services),
      port_(port),
      connection_(connection),
      state_(state),
      reader_(services, port, nmea) {}

void Magellan::send(std::string_view sentence) {
    sendSentence(services_, port_, sentence);
}

void Magellan::mgnStop() {
    send(signedSentence("$PMGNCMD,STOP*"));
}

// Identification.

bool Magellan::mgnVersion() {
    send("$PMGNCMD,VERSION*28\r\n");
    const std::string reply = readVersionReply();
    if (!contains(reply, "$PMGNVER")) {
        return false;
    }
    const std::vector<std::string_view> fields = splitText(reply, ',');
    const auto field = [&](std::size_t i) { return i < fields.size() ? fields[i] : ""; };
    connection_.productId = fromAnsi(field(1));
    connection_.softwareVersion = fromAnsi(trimBlanks(field(2)));
    connection_.description = fromAnsi(field(3).substr(0, field(3).find('*')));
    const std::string checksum(Sentence(reply).receivedChecksum().substr(0, 2));
    send(NmeaPacket().AckMgn(checksum));
    send(signedSentence("$PMGNCMD,HANDOFF*"));
    connection_.connected = true;
    services_.trace.traceLineOf([&] { return identText(connection_); });
    return true;
}

std::string Magellan::readVersionReply() {
    constexpr int kAttempts = 4;
    constexpr std::size_t kLongestReply = 128;
    for (int attempt = 1; attempt <= kAttempts; ++attempt) {
        waitOneSecond();
        std::array<std::uint8_t, kLongestReply> bytes{};
        const std::size_t count = port_.readArrived(bytes);
        if (count == 0) {
            continue;
        }
        const std::string text(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
        std::string reply(trimBlanks(text));
        services_.trace.traceLineOf(
            [&] { return "GET" + std::to_string(attempt) + ": " + fromAnsi(reply); });
        if (!reply.empty()) {
            return reply;
        }
    }
    return {};
}

void Magellan::waitOneSecond() {
    Host& host = services_.host;
    const double end = host.secondsClock() + 1;
    while (host.secondsClock() < end && mayGoOn(port_, host)) {
        host.processEvents();
        host.pause(kWaitSlice);
    }
}

// Downloads.

// True when the receiver ended its list itself; a refusal ends it like a silence.
bool Magellan::readList(std::string_view prefix, const TakeSentence& take) {
    for (;;) {
        const std::string sentence = reader_.mgnGet(prefix, kSentenceTimeOut);
        if (sentence.empty()) {
            if (services_.host.stopRequested()) {
                mgnStop();
            }
            return false;
        }
        if (contains(sentence, "$PMGNCMD,END")) {
            state_.lastChecksum = lastTwo(sentence);
            return true;
        }
        if (contains(sentence, "$PMGNCMD,UNABLE")) {
            return false;
        }
        take(sentence);
    }
}

// Whether the receiver's checksum is the one computed; otherwise the sentence is traced as dropped.
bool Magellan::accepts(std::string_view sentence, std::string_view checksum) {
    if (lastTwo(sentence) == checksum) {
        return true;
    }
    reject(sentence);
    return false;
}

void Magellan::reject(std::string_view sentence) {
    services_.trace.traceLineOf([&] { return nmeatext::kRejected + fromAnsi(sentence); });
}

void Magellan::endDownload(const char* letter) {
    services_.events.EndDownload(letter);
    services_.events.GpsInfo("");
    services_.events.GpsInfo("");
}

bool Magellan::mgnGetWaypoints() {
    mgnStop();
    state_.lastChecksum = "71";
    send("$PMGNCMD,WAYPOINT*71\r\n");
    services_.events.StartDownload("W", kUnknownCount, nmeatext::kWaypoints);
    state_.waypoints.clear();
    // Dropped sentences count too, so the progress may run ahead of what is delivered; it is meant.
    int received = 0;
    const bool complete = readList("$PMGNWPL", [&](const std::string& sentence) {
        ++received;
        takeWaypoint(sentence, received);
    });
    endDownload("W");
    return complete;
}

void Magellan::takeWaypoint(const std::string& sentence, int received) {
    Waypoint waypoint;
    if (!accepts(sentence, GetAttributes_MGN(waypoint, sentence))) {
        return;
    }
    if (!state_.waypoints.try_emplace(waypoint.ident, waypoint).second) {
        services_.trace.traceLineOf([&] { return nmeatext::kDuplicate + fromAnsi(sentence); });
        return;
    }
    services_.events.GpsInfo(nmeatext::kProgress + std::to_string(received));
    services_.events.WayptData(kUnknownCount, waypoint.getIdent(separator()), "D");
}

bool Magellan::mgnGetTracks() {
    mgnStop();
    send(signedSentence("$PMGNCMD,TRACK,2*"));
    services_.events.StartDownload("T", kUnknownCount, nmeatext::kTracks);
    TrackProgress progress;
    const bool complete = readList("$PMGNTRK", [&](const std::string& sentence) {
        ++progress.received;
        takeTrackPoint(sentence, progress);
    });
    endDownload("T");
    if (!progress.any && mayGoOn(port_, services_.host)) {
        services_.host.messageBox(nmeatext::kNoTrack, BoxIcon::information);
    }
    return complete;
}

void Magellan::takeTrackPoint(const std::string& sentence, TrackProgress& progress) {
    Trace point;
    if (!accepts(sentence, GetAttributes_MGN(point, sentence, std::floor(services_.host.now())))) {
        return;
    }
    progress.any = true;
    if (point.GetName() != progress.name) {
        progress.name = point.GetName();
        point.pFirst = true;
        services_.events.TrackHeader(kUnknownCount,
                                     "N;" + point.GetName() + " - " + dayText(point.pTime), "D");
    }
    services_.events.GpsInfo(nmeatext::kProgress + std::to_string(progress.received));
    services_.events.TrackData(kUnknownCount, point.getIdent(separator()), "D");
}

bool Magellan::mgnGetRoutes() {
    if (state_.waypoints.empty()) {
        services_.host.messageBox(nmeatext::kWaypointsFirst, BoxIcon::information);
        return false;
    }
    mgnStop();
    send(signedSentence("$PMGNCMD,ROUTE*"));
    services_.events.StartDownload("R", kUnknownCount, nmeatext::kRoutes);
    RouteAssembly routes(services_, state_.waypoints);
    const bool complete = readList(
        "$PMGNRTE", [&](const std::string& sentence) { takeRouteSentence(sentence, routes); });
    routes.finish();
    endDownload("R");
    if (!routes.foundRoutes() && mayGoOn(port_, services_.host)) {
        services_.host.messageBox(nmeatext::kNoRoute, BoxIcon::information);
    }
    return complete;
}

void Magellan::takeRouteSentence(const std::string& sentence, RouteAssembly& routes) {
    if (!accepts(sentence, Sentence(sentence).computedChecksum())) {
        return;
    }
    RoutePhrase phrase;
    try {
        phrase = RouteMGN(sentence);
    } catch (const RunTimeError&) {
        reject(sentence);
        return;
    }
    routes.take(phrase);
}

// Uploads. Receivers acknowledge each sentence; the acknowledgements are not waited for.

void Magellan::mgnSendWaypoints(std::vector<Waypoint> waypoints) {
    uploadWaypointSentences(services_, port_, kUploads, std::move(waypoints));
}

void Magellan::mgnSendRoutes(std::vector<Route> routes) {
    uploadRouteSentences(services_, port_, kUploads, std::move(routes));
}

void Magellan::mgnSendTracks(std::vector<TrackItem> items) {
    services_.events.StartUpload("T", countPoints(items), nmeatext::kUploadTracks);
    try {
        sendTrackPoints(items);
    } catch (const RunTimeError&) {  // a point that no sentence can hold ends the sending
    }
    send(kEndOfUpload);
    services_.events.EndUpload("T");
}

void Magellan::sendTrackPoints(std::vector<TrackItem>& items) {
    std::string name;
    std::int16_t numitem = 0;
    for (TrackItem& item : items) {
        // The name travels in each point, so headers are not sent.
        auto* point = std::get_if<Trace>(&item);
        if (point == nullptr) {
            continue;
        }
        if (!mayGoOn(port_, services_.host)) {
            return;
        }
        ++numitem;
        const std::string sentence = CoderMgn(*point);
        if (point->GetName() != name) {
            name = point->GetName();
            services_.events.TrackHeader(numitem, "N;" + name, "U");
        }
        send(sentence);
        services_.events.TrackData(numitem, point->getIdent(separator()), "U");
    }
}

// Real time.

void Magellan::mgnPvt() {
    send(signedSentence("$PMGNCMD,FIX*"));
    const std::string reply = waitForFix();
    if (reply.empty() || contains(reply, "UNABLE")) {
        services_.host.messageBox(nmeatext::kNoPosition, BoxIcon::information);
        if (services_.host.stopRequested()) {
            mgnStop();
        }
        return;
    }
    connection_.realTimeRunning = true;
    services_.events.Startpvt(nmeatext::kRealTime);
    followPosition();
    connection_.realTimeRunning = false;
    mgnStop();
    services_.events.EndPvt();
}

// The first reply that is a fix or a refusal; the last one when neither came in time.
std::string Magellan::waitForFix() {
    constexpr double kFirstFix = 10;  // seconds
    Host& host = services_.host;
    const double end = host.secondsClock() + kFirstFix;
    std::string reply;
    do {
        reply = reader_.mgnGet("$GPGGA", kSentenceTimeOut);
    } while (!contains(reply, "$GPGGA") && !contains(reply, "UNABLE") &&
             host.secondsClock() < end && mayGoOn(port_, host));
    return reply;
}

void Magellan::followPosition() {
    Host& host = services_.host;
    bool first = true;
    while (connection_.realTimeRunning && mayGoOn(port_, host)) {
        const std::string reply = reader_.mgnGet("$GPGGA", kSentenceTimeOut);
        if (!contains(reply, "$GPGGA")) {
            continue;
        }
        PvtData fix;
        GetAttributes_MGN(fix, reply, std::floor(host.now()), first);
        if (fix.point) {
            first = false;
            services_.events.PvtData(fix.getIdent(separator()));
        }
    }
}

}  // namespace marlune
