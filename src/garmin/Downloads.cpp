#include "garmin/Downloads.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/RunTimeError.h"
#include "garmin/Messages.h"
#include "garmin/link/Commands.h"
#include "garmin/records/Values.h"

namespace marlune {
namespace {

const std::string kDown = "D";

}  // namespace

// What differs between the kinds that one procedure downloads.
struct GarminDownloads::Kind {
    TransferKind kind;
    const char* letter;
    std::uint8_t command;
    const char* header;
    const char* nothing;      // shown for a count of 0
    const char* interrupted;  // shown for a silent pass
    bool listensOn;           // silence uses up one pass only, and does not end the loop
    std::array<RecordRule, 3> rules;
};

const GarminDownloads::Kind GarminDownloads::kWaypoints = {
    TransferKind::waypoints,
    "W",
    command::kTransferWaypoints,
    text::kWaypointsHeader,
    text::kNoWaypoints,
    text::kInterrupted,
    true,
    {{{pid::kWaypoint, &GarminDownloads::takeWaypoint}}}};

const GarminDownloads::Kind GarminDownloads::kTracks = {
    TransferKind::tracks,
    "T",
    command::kTransferTracks,
    text::kTracksHeader,
    text::kNoTracks,
    text::kTracksInterrupted,
    false,
    {{{pid::kTrackPoint, &GarminDownloads::takeTrackPoint},
      {pid::kTrackHeader, &GarminDownloads::takeTrackHeader}}}};

const GarminDownloads::Kind GarminDownloads::kRoutes = {
    TransferKind::routes,
    "R",
    command::kTransferRoutes,
    text::kRoutesHeader,
    text::kNoRoutes,
    text::kInterrupted,
    false,
    {{{pid::kRouteHeader, &GarminDownloads::takeRouteHeader},
      {pid::kRoutePoint, &GarminDownloads::takeRoutePoint},
      {pid::kRouteLink, &GarminDownloads::takeRouteLink}}}};

bool GarminDownloads::getWaypts() {
    services_.records.waypoints.clear();
    return download(kWaypoints);
}

bool GarminDownloads::getTracks() {
    services_.records.tracks.clear();
    return download(kTracks);
}

bool GarminDownloads::GetRoutes() {
    services_.records.routes.clear();
    routeCounter_ = 0;
    return download(kRoutes);
}

bool GarminDownloads::download(const Kind& kind) {
    TransferLog log(services_, kind.kind, TransferDirection::download);
    link_.discard();
    requestTransfer(link_, kind.command);
    const LinkPacket records = receiveCount();
    if (records.pid != pid::kRecords) {
        showProtocolError(services_.host, records.pid);
        return log.end(endingOf(records.pid), records.pid);
    }
    const std::int16_t count = acceptCount(records, log);
    if (count == 0) {
        services_.host.messageBox(kind.nothing, BoxIcon::information);
        log.end(Ending::nothingThere);
        return false;
    }
    services_.events.StartDownload(kind.letter, count, kind.header);
    const Ending ending = receiveRecords(kind, count, log);
    services_.events.EndDownload(kind.letter);
    return log.end(ending) && link_.tellsSuccess();
}

LinkPacket GarminDownloads::receiveCount() {
    constexpr int kFurtherReceives = 5;
    LinkPacket packet = link_.receive();
    if (packet.pid != pid::kNak) {
        for (int i = 0; i < kFurtherReceives && packet.pid != pid::kRecords; ++i) {
            packet = link_.receive();
        }
    }
    return packet;
}

std::int16_t GarminDownloads::acceptCount(const LinkPacket& packet, TransferLog& log) {
    link_.acknowledge(pid::kRecords);
    const unsigned low = packet.data.empty() ? 0U : packet.data[0];
    const unsigned high = packet.data.size() < 2 ? 0U : packet.data[1];
    log->announced = static_cast<int>(low + 256U * high);
    log->damaged += packet.damaged ? 1 : 0;
    // A count above 32767 turns negative, and the loops then make no pass.
    return static_cast<std::int16_t>(low + 256U * high);
}

Ending GarminDownloads::receiveRecords(const Kind& kind, std::int16_t count, TransferLog& log) {
    state_.transferRunning = true;
    bool silent = false;
    // One pass more than records: it is there for the transfer-complete packet.
    for (int i = 0; (link_.gathers() || i <= count) && state_.transferRunning && mayGoOn(); ++i) {
        const LinkPacket packet = link_.receive();
        if (packet.pid == pid::kTransferComplete) {
            link_.acknowledge(pid::kTransferComplete);
            return Ending::complete;
        }
        silent = packet.pid == 0;
        if (silent && !outlastsSilence(kind)) {
            break;
        }
        takeRecord(kind, static_cast<std::int16_t>(i + 1), packet, log);
    }
    if (mayGoOn() && !silent) {
        return state_.transferRunning ? Ending::endMissing : Ending::cancelled;
    }
    return endingOfSilence();
}

// Whether the loop goes on after a pass without a packet.
bool GarminDownloads::outlastsSilence(const Kind& kind) {
    if (!mayGoOn()) {
        return false;
    }
    services_.host.messageBox(kind.interrupted, BoxIcon::information);
    return kind.listensOn && !link_.gathers();
}

void GarminDownloads::takeRecord(const Kind& kind, std::int16_t numitem, const LinkPacket& packet,
                                 TransferLog& log) {
    if (packet.pid == 0) {
        return;
    }
    const auto* const rule = std::find_if(
        kind.rules.begin(), kind.rules.end(),
        [&](const RecordRule& each) { return each.take != nullptr && each.pid == packet.pid; });
    if (rule == kind.rules.end()) {
        // Neither acknowledged nor told to the host, and the pass is used up.
        services_.trace.traceLine("Paquet inconnu: pid = " + std::to_string(packet.pid));
        ++log->unknown;
        return;
    }
    takeRecordBy(*rule, numitem, packet, log);
}

// A record that cannot be decoded is acknowledged all the same, so that the transfer goes on.
void GarminDownloads::takeRecordBy(const RecordRule& rule, std::int16_t numitem,
                                   const LinkPacket& packet, TransferLog& log) {
    try {
        const bool taken = (this->*rule.take)(numitem, packet.data);
        ++(taken ? log->transferred : log->positionless);
        log->damaged += taken && packet.damaged ? 1 : 0;
    } catch (const RunTimeError& error) {
        services_.trace.traceLine("Erreur " + std::to_string(error.number()) + " " + error.what());
        ++log->undecodable;
    }
    link_.acknowledge(rule.pid);
}

std::string GarminDownloads::keepWaypoint(std::vector<WaypointRecord>& kept, Bytes data) {
    const std::string& type = capabilities().waypointType;
    Waypoint waypoint;
    waypoint.GetAttributes(type, data);
    std::string line = waypoint.getIdent(separator());
    kept.push_back(recordOf(std::move(waypoint), type, data));
    return line;
}

bool GarminDownloads::takeWaypoint(std::int16_t numitem, Bytes data) {
    services_.events.WayptData(numitem, keepWaypoint(services_.records.waypoints, data), kDown);
    return true;
}

bool GarminDownloads::takeTrackPoint(std::int16_t numitem, Bytes data) {
    const std::string& type = capabilities().trackPointType;
    Trace point;
    if (!point.GetAttributes(type, data)) {
        return false;
    }
    addPoint(services_.records, recordOf(point, type, data));
    services_.events.TrackData(numitem, point.getIdent(separator()), kDown);
    return true;
}

bool GarminDownloads::takeTrackHeader(std::int16_t numitem, Bytes data) {
    const std::string& type = capabilities().trackHeaderType;
    TrkHeader header;
    header.GetAttributes(type, data);
    services_.records.tracks.push_back(recordOf(header, type));
    services_.events.TrackHeader(numitem, header.getIdent(), kDown);
    return true;
}

bool GarminDownloads::takeRouteHeader(std::int16_t numitem, Bytes data) {
    ++routeCounter_;
    Route route;
    route.GetAttributes(capabilities().routeHeaderType, data);
    if (route.numRte == 0) {
        route.numRte = routeCounter_;
    }
    services_.records.routes.push_back(recordOf(route));
    services_.events.RouteHeader(numitem, route.getIdent(), kDown);
    return true;
}

bool GarminDownloads::takeRoutePoint(std::int16_t numitem, Bytes data) {
    const std::string& type = capabilities().routePointType();
    Waypoint point;
    point.GetAttributes(type, data);
    const std::string line = point.getIdent(separator());
    addPoint(services_.records, recordOf(std::move(point), type, data));
    services_.events.RouteData(numitem, line, kDown);
    return true;
}

bool GarminDownloads::takeRouteLink(std::int16_t numitem, Bytes data) {
    RteLink link;
    link.GetAttributes(capabilities().routeLinkType, data);
    addLink(services_.records, recordOf(link));
    services_.events.RouteLink(numitem, link.getIdent(), kDown);
    return true;
}

bool GarminDownloads::takeProximity(std::int16_t numitem, Bytes data) {
    std::vector<WaypointRecord>& kept = services_.records.proximities;
    const std::string line = keepWaypoint(kept, data);
    if (!kept.back().proximity) {
        kept.back().proximity = alarmDistance(capabilities().proximityType, data);
    }
    services_.events.ProxData(numitem, line, kDown);
    return true;
}

bool GarminDownloads::getProximites() {
    TransferLog log(services_, TransferKind::proximities, TransferDirection::download);
    services_.records.proximities.clear();
    // Here the line is not emptied first, and the count is the second packet or none.
    sendCommand(link_, command::kTransferProximities);
    LinkPacket packet = link_.receive();
    if (packet.pid != pid::kNak) {
        packet = link_.receive();
    }
    if (packet.pid != pid::kRecords) {
        showProtocolError(services_.host, packet.pid);
        return log.end(endingOf(packet.pid), packet.pid);
    }
    const std::int16_t count = acceptCount(packet, log);
    services_.events.StartDownload("P", count, text::kProximitiesHeader);
    LinkPacket last;
    const Ending ending = receiveProximities(count, last, log);
    if (ending != Ending::complete && mayGoOn()) {
        if (last.pid == pid::kTransferComplete) {
            services_.host.messageBox(text::kDone, BoxIcon::information);
        } else {
            showProtocolError(services_.host, last.pid);
        }
    }
    services_.events.EndDownload("P");
    log.end(last.pid == pid::kTransferComplete ? Ending::complete : ending, last.pid);
    return false;
}

// Complete when all records came: the transfer-complete packet is then left unread.
Ending GarminDownloads::receiveProximities(std::int16_t count, LinkPacket& last, TransferLog& log) {
    static constexpr RecordRule kRule = {pid::kProximityWaypoint, &GarminDownloads::takeProximity};
    for (int i = 1; i <= count; ++i) {
        if (!mayGoOn()) {
            return endingOfSilence();
        }
        last = link_.receive();
        if (last.pid != kRule.pid) {
            return last.pid == pid::kTransferComplete ? Ending::endMissing : endingOf(last.pid);
        }
        takeRecordBy(kRule, static_cast<std::int16_t>(i), last, log);
    }
    return Ending::complete;
}

}  // namespace marlune
