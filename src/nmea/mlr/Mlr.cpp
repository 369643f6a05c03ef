#include "nmea/mlr/Mlr.h"

#include <cmath>
#include <cstddef>
#include <utility>

#include "base/CodePage.h"
#include "base/RunTimeError.h"
#include "garmin/records/Values.h"
#include "garmin/values/LineFields.h"
#include "garmin/values/NumberText.h"
#include "nmea/Messages.h"
#include "nmea/RouteAssembly.h"
#include "nmea/RouteSentence.h"
#include "nmea/Sentence.h"
#include "nmea/SentenceUpload.h"
#include "nmea/Waiting.h"
#include "nmea/mlr/BlockDownload.h"
#include "nmea/mlr/MlrRecords.h"

namespace marlune {
namespace {

// Every command ends with the sum of the character codes in front of it.
constexpr const char* kWhoIsIt = "$PMLR,26,01,01,0339\r\n";
constexpr const char* kWhoIsItOld = "$PMLR,0E,01,01,0346\r\n";
constexpr const char* kDone = "$PMLR,06,00,02A9\r\n";
constexpr const char* kSendTracks = "$PMLR,24,02,0101,0399\r\n";
constexpr const char* kSendWaypoints = "$PMLR,24,02,0301,039B\r\n";

constexpr float kIdentTimeOut = 3;    // seconds
constexpr float kFirstSentence = 10;  // the user starts the sending at the receiver
constexpr float kFollowingSentence = 3;
constexpr const char* kListCodes = "$GPWPL|$GPRTE";
constexpr std::int16_t kUnknownCount = 100;

constexpr UploadDialect kUploads = {Coder_MLR, PhraseRouteMLR, ""};

// A route has a number below 256; more sentences than this describe none.
constexpr std::size_t kMostRouteSentences = 16384;

// The first number in a text, anywhere.
double firstNumber(std::string_view text) {
    const std::size_t digit = text.find_first_of("0123456789");
    return digit == std::string_view::npos ? 0 : readNumber(text.substr(digit));
}

// These sentences pad their names.
WaypointRecord recordOfMlr(const Waypoint& waypoint) {
    WaypointRecord record = recordOf(waypoint);
    record.name = trimBlanks(waypoint.ident);
    return record;
}

// "TRC012" or "TR0123"; TROYES is a waypoint.
bool isTrackPoint(std::string_view waypointSentence) {
    const std::string_view name = Sentence(waypointSentence).field(5);
    const std::size_t number = name.starts_with("TRC") ? 3 : 2;
    return name.starts_with("TR") && name.size() > number && name[number] >= '0' &&
           name[number] <= '9';
}

}  // namespace

Mlr::Mlr(Services& services, PortLease& port, ConnectionState& connection, NmeaState& nmea,
         MlrState& state)
    : services_(services),
      port_(port),
      connection_(connection),
      state_(state),
      reader_(services, port, nmea) {}

void Mlr::send(std::string_view text) {
    sendSentence(services_, port_, text);
}

double Mlr::today() {
    return std::floor(services_.host.now());
}

// Identification.

bool Mlr::mlrIdent() {
    connection_.description = nmeatext::kMlrName;
    send(kWhoIsIt);
    std::string reply = reader_.nextSentence("$PMLR,IDGPS", kIdentTimeOut);
    if (contains(reply, "IDGPS")) {
        acceptBlockReceiver(reply);
        return true;
    }
    send(kWhoIsItOld);
    reply = reader_.nextSentence("$INFOS", kIdentTimeOut);
    if (contains(reply, "$INFOS")) {
        acceptSentenceReceiver(reply);
        return true;
    }
    return false;
}

// $PMLR,IDGPS,..,name,..,..,version,model
void Mlr::acceptBlockReceiver(const std::string& reply) {
    send(kDone);
    const std::vector<std::string_view> fields = splitText(reply, ',');
    const auto field = [&](std::size_t i) { return i < fields.size() ? fields[i] : ""; };
    connection_.description = fromAnsi(field(3)) + ' ' + fromAnsi(field(7));
    accept(readNumber(field(6)), true);
}

// $INFOS,MODEL 1.20 ...: words between blanks and commas.
void Mlr::acceptSentenceReceiver(const std::string& reply) {
    send(kDone);
    constexpr const char* kSeparators = " ,";
    const std::size_t gap = std::min(reply.find_first_of(kSeparators), reply.size());
    const std::size_t start = std::min(reply.find_first_not_of(kSeparators, gap), reply.size());
    const std::string name = reply.substr(start, reply.find_first_of(kSeparators, start) - start);
    connection_.description = nmeatext::kMlrName + (' ' + fromAnsi(name));
    accept(firstNumber(reply), false);
}

void Mlr::accept(double version, bool sendsBlocks) {
    connection_.softwareVersion = numberText(version, services_.host.decimalSeparator());
    connection_.connected = true;
    state_.sendsBlocks = sendsBlocks;
    services_.trace.traceLineOf([&] { return identText(connection_); });
}

// Downloads.

bool Mlr::mlrGetWaypoints() {
    TransferLog log(services_, TransferKind::waypoints, TransferDirection::download);
    services_.records.waypoints.clear();
    List list = {"W", nmeatext::kMlrWaypoints, nmeatext::kMlrNoWaypoint, log};
    if (state_.sendsBlocks) {
        list.header = nmeatext::kMlrBlockWaypoints;
        return downloadBlocks(list, kSendWaypoints, std::string_view("$GPWPL").size(),
                              [&](std::string_view record) { takeWaypointRecord(record, list); });
    }
    const auto take = [&](const std::string& sentence) {
        if (contains(sentence, "$GPWPL") && !isTrackPoint(sentence)) {
            takeWaypoint(sentence, list);
        }
    };
    return finish(list, listen(take, log));
}

bool Mlr::mlrGetTracks() {
    TransferLog log(services_, TransferKind::tracks, TransferDirection::download);
    services_.records.tracks.clear();
    List list = {"T", nmeatext::kMlrTracks, nmeatext::kMlrNoTrack, log};
    if (state_.sendsBlocks) {
        list.header = nmeatext::kMlrBlockTracks;
        std::uint16_t previous = 0;
        return downloadBlocks(
            list, kSendTracks, kMlrTrackRecordLength,
            [&](std::string_view record) { takeTrackRecord(record, previous, list); });
    }
    const auto take = [&](const std::string& sentence) {
        if (contains(sentence, "$GPWPL") && isTrackPoint(sentence)) {
            takeTrackPoint(sentence, list);
        }
    };
    return finish(list, listen(take, log));
}

// The points' sentences may come before or behind the routes that name them.
bool Mlr::mlrGetRoutes() {
    TransferLog log(services_, TransferKind::routes, TransferDirection::download);
    services_.records.routes.clear();
    std::vector<RoutePhrase> phrases;
    const auto take = [&](const std::string& sentence) {
        if (contains(sentence, "$GPWPL")) {
            Waypoint waypoint;
            (void)decodeWaypoint(sentence, waypoint, log);
        } else if (phrases.size() < kMostRouteSentences) {
            takeRouteSentence(sentence, phrases, log);
        }
    };
    const Ending ending = listen(take, log);
    List list = {"R", nmeatext::kMlrRoutes, nmeatext::kMlrNoRoute, log};
    RouteAssembly routes(services_, state_.waypoints, log);
    for (const RoutePhrase& phrase : phrases) {
        begin(list, kUnknownCount);
        routes.take(phrase);
    }
    routes.finish();
    return finish(list, ending);
}

// Hears the lists that a sentence receiver sends when its user wants it to.
Ending Mlr::listen(const TakeText& take, TransferLog& log) {
    reader_.beginList();
    Checksums checksums;
    const Ending ending = takeSentences(take, checksums);
    log->damaged += checksums.wrong + (checksums.present > 0 ? checksums.missing : 0);
    log->wrongChecksum += reader_.brokenPieces();
    return ending;
}

Ending Mlr::takeSentences(const TakeText& take, Checksums& checksums) {
    float wait = kFirstSentence;
    for (;;) {
        const std::string sentence = reader_.nextSentence(kListCodes, wait);
        if (sentence.empty()) {
            const Ending ending = endingOfSilence(port_, services_.host);
            return ending == Ending::interrupted && !services_.host.stopRequested() &&
                           wait == kFollowingSentence
                       ? Ending::complete
                       : ending;
        }
        wait = kFollowingSentence;
        const Sentence fields(sentence);
        ++(fields.receivedChecksum().empty() ? checksums.missing : checksums.present);
        checksums.wrong += fields.isDamaged() ? 1 : 0;
        take(sentence);
    }
}

bool Mlr::downloadBlocks(List& list, const char* request, std::size_t shortestRecord,
                         const TakeText& take) {
    const MlrBlocks download = mlrBlockDownload(services_, port_, request, kDone);
    if (download.ending != Ending::complete) {
        return list.log.end(download.ending);
    }
    list.log->announced = download.total;
    list.log->oversized += download.dropped;
    if (download.total > 0) {
        begin(list, static_cast<std::int16_t>(download.total));
    }
    int number = 0;
    for (const BlocMLR& block : download.blocks) {
        takeBlock(block, ++number, shortestRecord, take, list.log);
    }
    return finish(list, mayGoOn(port_, services_.host) ? Ending::complete
                                                       : endingOfSilence(port_, services_.host));
}

void Mlr::takeBlock(const BlocMLR& block, int number, std::size_t shortestRecord,
                    const TakeText& take, TransferLog& log) {
    services_.trace.traceLine("-------bloc:" + std::to_string(number));
    if (block.recordCount() == 0) {
        return;
    }
    const std::size_t length = block.recordLength();
    if (length < shortestRecord || length > INT16_MAX) {
        services_.events.GpsInfo(nmeatext::kMlrBadBlock + std::to_string(number));
        log->oversized += static_cast<int>(block.recordCount());
        return;
    }
    int packet = 0;
    for (const std::string_view record : block.Decoder(static_cast<std::int16_t>(length))) {
        if (!mayGoOn(port_, services_.host)) {
            return;
        }
        services_.trace.traceLine(" Paquet:" + std::to_string(++packet));
        take(std::string(record));
    }
}

// Nothing is announced before there is something to report.
void Mlr::begin(List& list, std::int16_t count) {
    if (!list.begun) {
        list.begun = true;
        services_.events.StartDownload(list.letter, count, list.header);
    }
}

bool Mlr::finish(const List& list, Ending ending) {
    if (list.begun) {
        services_.events.EndDownload(list.letter);
    } else if (ending == Ending::complete && mayGoOn(port_, services_.host)) {
        services_.host.messageBox(list.nothingText, BoxIcon::information);
    }
    const bool ended = ending == Ending::complete;
    list.log.end(ended && !list.begun ? Ending::nothingThere : ending);
    return ended && list.begun;
}

// Decodes and remembers a waypoint; a sentence that is none is traced and left out.
bool Mlr::decodeWaypoint(std::string_view sentence, Waypoint& waypoint, TransferLog& log) {
    if (!GetAttributes_MLR(waypoint, sentence)) {
        reject(sentence, log);
        return false;
    }
    state_.waypoints.insert_or_assign(std::string(trimBlanks(waypoint.ident)), waypoint);
    return true;
}

void Mlr::reject(std::string_view sentence, TransferLog& log) {
    ++log->undecodable;
    services_.trace.traceLineOf([&] { return nmeatext::kRejected + fromAnsi(sentence); });
}

void Mlr::takeWaypoint(std::string_view sentence, List& list) {
    Waypoint waypoint;
    if (decodeWaypoint(sentence, waypoint, list.log)) {
        begin(list, kUnknownCount);
        ++list.log->transferred;
        services_.records.waypoints.push_back(recordOfMlr(waypoint));
        services_.events.WayptData(++list.item, waypoint.getIdent(separator()), "D");
    }
}

void Mlr::takeWaypointRecord(std::string_view record, List& list) {
    using namespace std::string_view_literals;
    // What pads a record stands around the sentence.
    const std::size_t start = record.find("$GPWPL");
    if (start == std::string_view::npos) {
        reject(record, list.log);
        return;
    }
    const std::size_t end = record.find_last_not_of(" \r\n\0"sv) + 1;
    const std::string_view sentence = record.substr(start, end - start);
    list.log->damaged += Sentence(sentence).isDamaged() ? 1 : 0;
    takeWaypoint(sentence, list);
}

void Mlr::takeTrackPoint(std::string_view sentence, List& list) {
    Trace point;
    if (!GetAttributes_MLR(point, sentence, today())) {
        reject(sentence, list.log);
        return;
    }
    TrackPointRecord value = recordOf(point);
    value.time.reset();  // the line's is made up, to keep the order
    reportPoint(point, value, list);
}

void Mlr::takeTrackRecord(std::string_view record, std::uint16_t& previous, List& list) {
    Trace point;
    const std::uint16_t number = GetAttributes_MLR_SP(point, record, today());
    point.pFirst = number == 1 || number <= previous;
    previous = number;
    TrackPointRecord value = recordOf(point);
    if (!isDated_MLR_SP(record)) {
        value.time.reset();
    }
    reportPoint(point, value, list);
}

void Mlr::reportPoint(Trace point, const TrackPointRecord& value, List& list) {
    begin(list, kUnknownCount);
    point.pFirst = point.pFirst || list.item == 0;
    ++list.log->transferred;
    addPoint(services_.records, value);
    services_.events.TrackData(++list.item, point.getIdent(separator()), "D");
}

void Mlr::takeRouteSentence(std::string_view sentence, std::vector<RoutePhrase>& phrases,
                            TransferLog& log) {
    try {
        RoutePhrase phrase = RouteMLR(sentence);
        if (!phrase.points.empty()) {
            phrases.push_back(std::move(phrase));
        }
    } catch (const RunTimeError&) {
        reject(sentence, log);
    }
}

// Uploads.

void Mlr::mlrSendWaypoints(const Upload<Waypoint>& upload) {
    uploadWaypointSentences(services_, port_, kUploads, upload);
}

void Mlr::mlrSendRoutes(const Upload<Route>& upload) {
    uploadRouteSentences(services_, port_, kUploads, upload);
}

void Mlr::mlrSendTracks() {
    services_.host.messageBox(nmeatext::kMlrNoTrackUpload, BoxIcon::critical);
    TransferLog(services_, TransferKind::tracks, TransferDirection::upload).end(Ending::notOffered);
}

}  // namespace marlune
