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
#include "garmin/records/Values.h"
#include "garmin/values/LineFields.h"
#include "nmea/Messages.h"
#include "nmea/NmeaPacket.h"
#include "nmea/PositionFields.h"
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

// Whether the receiver itself ended its list or declined it: of one that fell silent nobody knows
// what it holds.
bool isEnded(Ending ending) {
    return ending == Ending::complete || ending == Ending::refused;
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

bool Magellan::send(std::string_view sentence) {
    return sendSentence(services_, port_, sentence);
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

Ending Magellan::readList(std::string_view prefix, const TakeSentence& take, TransferLog& log) {
    reader_.beginList();
    const Ending ending = readSentences(prefix, take, log);
    log->wrongChecksum += reader_.brokenPieces();
    return ending;
}

// Complete when the receiver ended its list itself; a refusal ends it like a silence.
Ending Magellan::readSentences(std::string_view prefix, const TakeSentence& take,
                               TransferLog& log) {
    for (;;) {
        const std::string sentence = reader_.mgnGet(prefix, kSentenceTimeOut);
        if (sentence.empty()) {
            if (services_.host.stopRequested()) {
                mgnStop();
            }
            return endingOfSilence(port_, services_.host);
        }
        if (contains(sentence, "$PMGNCMD,END")) {
            // A sentence that has lost its end runs into the next one.
            log->wrongChecksum += sentence.starts_with("$PMGNCMD,END") ? 0 : 1;
            state_.lastChecksum = lastTwo(sentence);
            return Ending::complete;
        }
        if (contains(sentence, "$PMGNCMD,UNABLE")) {
            return Ending::refused;
        }
        take(sentence);
    }
}

// Whether the receiver's checksum is the one that the decoder computed, which computes none of what
// it cannot read; otherwise the sentence is traced as dropped.
bool Magellan::accepts(std::string_view sentence, std::string_view checksum, TransferLog& log) {
    if (lastTwo(sentence) == checksum) {
        return true;
    }
    reject(sentence);
    const bool intact = lastTwo(sentence) == Sentence(sentence).computedChecksum();
    ++(intact ? log->undecodable : log->wrongChecksum);
    return false;
}

bool Magellan::endList(Ending ending, TransferLog& log) {
    const bool ended = ending == Ending::complete;
    const bool nothing = log->transferred + log->rejected() + log->duplicates == 0;
    log.end(ended && nothing ? Ending::nothingThere : ending);
    return ended;
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
    TransferLog log(services_, TransferKind::waypoints, TransferDirection::download);
    mgnStop();
    state_.lastChecksum = "71";
    send("$PMGNCMD,WAYPOINT*71\r\n");
    services_.events.StartDownload("W", kUnknownCount, nmeatext::kWaypoints);
    state_.waypoints.clear();
    services_.records.waypoints.clear();
    // Dropped sentences count too, so the progress that hosts show may run ahead of what is
    // delivered: it tells that the line is alive.
    int received = 0;
    const auto take = [&](const std::string& sentence) {
        ++received;
        takeWaypoint(sentence, received, log);
    };
    const Ending ending = readList("$PMGNWPL", take, log);
    endDownload("W");
    return endList(ending, log);
}

void Magellan::takeWaypoint(const std::string& sentence, int received, TransferLog& log) {
    Waypoint waypoint;
    if (!accepts(sentence, GetAttributes_MGN(waypoint, sentence), log)) {
        return;
    }
    if (!state_.waypoints.try_emplace(waypoint.ident, waypoint).second) {
        services_.trace.traceLineOf([&] { return nmeatext::kDuplicate + fromAnsi(sentence); });
        ++log->duplicates;
        return;
    }
    ++log->transferred;
    WaypointRecord record = recordOf(waypoint);
    record.symbol.reset();  // the sentence's icon is not read
    record.display.reset();
    services_.records.waypoints.push_back(std::move(record));
    services_.events.GpsInfo(nmeatext::kProgress + std::to_string(received));
    services_.events.WayptData(kUnknownCount, waypoint.getIdent(separator()), "D");
}

bool Magellan::mgnGetTracks() {
    TransferLog log(services_, TransferKind::tracks, TransferDirection::download);
    services_.records.tracks.clear();
    mgnStop();
    send(signedSentence("$PMGNCMD,TRACK,2*"));
    services_.events.StartDownload("T", kUnknownCount, nmeatext::kTracks);
    TrackProgress progress;
    const auto take = [&](const std::string& sentence) {
        ++progress.received;
        takeTrackPoint(sentence, progress, log);
    };
    const Ending ending = readList("$PMGNTRK", take, log);
    endDownload("T");
    if (!progress.any && isEnded(ending) && mayGoOn(port_, services_.host)) {
        services_.host.messageBox(nmeatext::kNoTrack, BoxIcon::information);
    }
    return endList(ending, log);
}

void Magellan::takeTrackPoint(const std::string& sentence, TrackProgress& progress,
                              TransferLog& log) {
    Trace point;
    const double today = std::floor(services_.host.now());
    if (!accepts(sentence, GetAttributes_MGN(point, sentence, today), log)) {
        return;
    }
    point.pFirst = !progress.any;
    progress.any = true;
    // A point without a name belongs to the track under way.
    if (!point.GetName().empty() && point.GetName() != progress.name) {
        point.pFirst = true;
        beginTrack(point, progress, log);
    }
    ++log->transferred;
    services_.events.GpsInfo(nmeatext::kProgress + std::to_string(progress.received));
    TrackPointRecord value = recordOf(point);
    if (!isDated(Sentence(sentence))) {
        value.time.reset();  // the line's date is today's, for want of another
    }
    addPoint(services_.records, value);
    services_.events.TrackData(kUnknownCount, point.getIdent(separator()), "D");
}

void Magellan::beginTrack(const Trace& point, TrackProgress& progress, TransferLog& log) {
    progress.name = point.GetName();
    ++log->transferred;
    services_.records.tracks.emplace_back().name = point.GetName();
    services_.events.TrackHeader(kUnknownCount,
                                 "N;" + point.GetName() + " - " + dayText(point.pTime), "D");
}

bool Magellan::mgnGetRoutes() {
    TransferLog log(services_, TransferKind::routes, TransferDirection::download);
    services_.records.routes.clear();
    if (state_.waypoints.empty()) {
        services_.host.messageBox(nmeatext::kWaypointsFirst, BoxIcon::information);
        return log.end(Ending::needsWaypoints);
    }
    mgnStop();
    send(signedSentence("$PMGNCMD,ROUTE*"));
    services_.events.StartDownload("R", kUnknownCount, nmeatext::kRoutes);
    RouteAssembly routes(services_, state_.waypoints, log);
    const auto take = [&](const std::string& sentence) {
        takeRouteSentence(sentence, routes, log);
    };
    const Ending ending = readList("$PMGNRTE", take, log);
    routes.finish();
    endDownload("R");
    if (!routes.foundRoutes() && isEnded(ending) && mayGoOn(port_, services_.host)) {
        services_.host.messageBox(nmeatext::kNoRoute, BoxIcon::information);
    }
    return endList(ending, log);
}

void Magellan::takeRouteSentence(const std::string& sentence, RouteAssembly& routes,
                                 TransferLog& log) {
    if (!accepts(sentence, Sentence(sentence).computedChecksum(), log)) {
        return;
    }
    RoutePhrase phrase;
    try {
        phrase = RouteMGN(sentence, state_.waypoints);
    } catch (const RunTimeError&) {
        reject(sentence);
        ++log->undecodable;
        return;
    }
    routes.take(phrase);
}

// Uploads. Receivers acknowledge each sentence; the acknowledgements are not waited for.

void Magellan::mgnSendWaypoints(const Upload<Waypoint>& upload) {
    uploadWaypointSentences(services_, port_, kUploads, upload);
}

void Magellan::mgnSendRoutes(const Upload<Route>& upload) {
    uploadRouteSentences(services_, port_, kUploads, upload);
}

void Magellan::mgnSendTracks(const Upload<TrackItem>& upload) {
    TransferLog log(services_, TransferKind::tracks, TransferDirection::upload);
    reportReading(log, upload.reading);
    services_.records.tracks.clear();
    const std::int16_t points = countPoints(upload.records);
    log->announced = points;
    services_.events.StartUpload("T", points, nmeatext::kUploadTracks);
    const Ending ending = sendTrackPoints(upload.records, log);
    if (!port_.isGone()) {
        send(kEndOfUpload);
    }
    services_.events.EndUpload("T");
    log.end(ending);
}

Ending Magellan::sendTrackPoints(const std::vector<TrackItem>& items, TransferLog& log) {
    std::string name;
    std::int16_t numitem = 0;
    bool taken = true;
    for (const TrackItem& item : items) {
        // The name travels in each point, so headers are not sent.
        const auto* point = std::get_if<Trace>(&item);
        if (point == nullptr) {
            continue;
        }
        if (!maySend(port_, services_.host)) {
            break;
        }
        ++numitem;
        std::string sentence;
        try {
            sentence = CoderMgn(*point);
        } catch (const RunTimeError&) {
            return Ending::unsendable;  // a point that no sentence can hold ends the sending
        }
        if (point->GetName() != name) {
            name = point->GetName();
            services_.records.tracks.emplace_back().name = name;
            services_.events.TrackHeader(numitem, "N;" + name, "U");
        }
        taken = send(sentence);
        if (!taken) {
            break;
        }
        ++log->transferred;
        addPoint(services_.records, recordOf(*point));
        services_.events.TrackData(numitem, point->getIdent(separator()), "U");
    }
    return endingOfUpload(port_, services_.host, taken);
}

// Real time.

void Magellan::mgnPvt() {
    TransferLog log(services_, TransferKind::realTime, TransferDirection::download);
    services_.records.fix.reset();
    send(signedSentence("$PMGNCMD,FIX*"));
    bool refused = false;
    const std::string reply = waitForFix(refused);
    if (reply.empty() || contains(reply, "UNABLE")) {
        services_.host.messageBox(nmeatext::kNoPosition, BoxIcon::information);
        if (services_.host.stopRequested()) {
            mgnStop();
        }
        log.end(refused ? Ending::refused : endingOfSilence(port_, services_.host));
        return;
    }
    connection_.realTimeRunning = true;
    services_.events.Startpvt(nmeatext::kRealTime);
    followPosition(log);
    connection_.realTimeRunning = false;
    mgnStop();
    services_.events.EndPvt();
    log.end(mayGoOn(port_, services_.host) ? Ending::complete
                                           : endingOfSilence(port_, services_.host));
}

// The first reply that is a fix, or the last one when none came in time: a receiver that declines
// may find its position yet.
std::string Magellan::waitForFix(bool& refused) {
    constexpr double kFirstFix = 10;  // seconds
    Host& host = services_.host;
    const double end = host.secondsClock() + kFirstFix;
    std::string reply;
    do {
        reply = reader_.mgnGet("$GPGGA", kSentenceTimeOut);
        refused = refused || contains(reply, "UNABLE");
    } while (!contains(reply, "$GPGGA") && host.secondsClock() < end && mayGoOn(port_, host));
    return reply;
}

void Magellan::followPosition(TransferLog& log) {
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
            ++log->transferred;
            services_.records.fix = recordOfFix(fix, Sentence(reply));
            services_.events.PvtData(fix.getIdent(separator()));
        }
    }
}

// The sentence tells the time of day in UTC and no date; the fix is of this moment, so its date is
// the one that brings the two nearest.
FixRecord Magellan::recordOfFix(const PvtData& fix, const Sentence& sentence) {
    const ExactPosition position = readExactPosition(sentence, 2);
    FixRecord record;
    record.latitude = position.latitude;
    record.longitude = position.longitude;
    record.altitude = readExactAltitude(sentence.field(9), sentence.field(10));
    const double now = services_.host.utcNow();
    const double timeOfDay = fix.time - std::floor(fix.time);
    record.time = unixTime(timeOfDay + std::nearbyint(now - timeOfDay));
    return record;
}

}  // namespace marlune
