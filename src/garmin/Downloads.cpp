#include "garmin/Downloads.h"

#include <algorithm>
#include <array>

#include "base/RunTimeError.h"
#include "garmin/Identification.h"
#include "garmin/Messages.h"
#include "garmin/link/PacketIds.h"

namespace marlune {
namespace {

const std::string kDown = "D";

}  // namespace

// What differs between the kinds that one procedure downloads.
struct GarminDownloads::Kind {
    const char* letter;
    std::uint8_t command;
    const char* header;
    const char* nothing;      // shown for a count of 0
    const char* interrupted;  // shown for a silent pass
    bool listensOn;           // silence uses up one pass only, and does not end the loop
    std::array<RecordRule, 3> rules;
};

const GarminDownloads::Kind GarminDownloads::kWaypoints = {
    "W",
    command::kTransferWaypoints,
    text::kWaypointsHeader,
    text::kNoWaypoints,
    text::kInterrupted,
    true,
    {{{pid::kWaypoint, &GarminDownloads::takeWaypoint}}}};

const GarminDownloads::Kind GarminDownloads::kTracks = {
    "T",
    command::kTransferTracks,
    text::kTracksHeader,
    text::kNoTracks,
    text::kTracksInterrupted,
    false,
    {{{pid::kTrackPoint, &GarminDownloads::takeTrackPoint},
      {pid::kTrackHeader, &GarminDownloads::takeTrackHeader}}}};

const GarminDownloads::Kind GarminDownloads::kRoutes = {
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
    garmin_.waypoints.clear();
    return download(kWaypoints);
}

bool GarminDownloads::getTracks() {
    garmin_.tracks.clear();
    return download(kTracks);
}

bool GarminDownloads::GetRoutes() {
    garmin_.routes.clear();
    garmin_.routeLinks.clear();
    routeCounter_ = 0;
    return download(kRoutes);
}

bool GarminDownloads::download(const Kind& kind) {
    link_.discard();
    requestTransfer(link_, kind.command);
    const std::optional<std::int16_t> count = receiveCount();
    if (!count) {
        return false;
    }
    if (*count == 0) {
        services_.host.messageBox(kind.nothing, BoxIcon::information);
        return false;
    }
    services_.events.StartDownload(kind.letter, *count, kind.header);
    const bool complete = receiveRecords(kind, *count);
    services_.events.EndDownload(kind.letter);
    return complete && link_.tellsSuccess();
}

std::optional<std::int16_t> GarminDownloads::receiveCount() {
    constexpr int kFurtherReceives = 5;
    LinkPacket packet = link_.receive();
    if (packet.pid != pid::kNak) {
        for (int i = 0; i < kFurtherReceives && packet.pid != pid::kRecords; ++i) {
            packet = link_.receive();
        }
    }
    if (packet.pid != pid::kRecords) {
        showProtocolError(services_.host, packet.pid);
        return std::nullopt;
    }
    return acceptCount(packet);
}

std::int16_t GarminDownloads::acceptCount(const LinkPacket& packet) {
    link_.acknowledge(pid::kRecords);
    const unsigned low = packet.data.empty() ? 0U : packet.data[0];
    const unsigned high = packet.data.size() < 2 ? 0U : packet.data[1];
    // A count above 32767 turns negative, and the loops then make no pass.
    return static_cast<std::int16_t>(low + 256U * high);
}

bool GarminDownloads::receiveRecords(const Kind& kind, std::int16_t count) {
    state_.transferRunning = true;
    // One pass more than records: it is there for the transfer-complete packet.
    for (int i = 0; (link_.gathers() || i <= count) && state_.transferRunning && mayGoOn(); ++i) {
        const LinkPacket packet = link_.receive();
        if (packet.pid == pid::kTransferComplete) {
            link_.acknowledge(pid::kTransferComplete);
            return true;
        }
        if (packet.pid == 0 && !outlastsSilence(kind)) {
            break;
        }
        takeRecord(kind, static_cast<std::int16_t>(i + 1), packet);
    }
    return false;
}

// Whether the loop goes on after a pass without a packet.
bool GarminDownloads::outlastsSilence(const Kind& kind) {
    if (!mayGoOn()) {
        return false;
    }
    services_.host.messageBox(kind.interrupted, BoxIcon::information);
    return kind.listensOn && !link_.gathers();
}

void GarminDownloads::takeRecord(const Kind& kind, std::int16_t numitem, const LinkPacket& packet) {
    if (packet.pid == 0) {
        return;
    }
    const auto* const rule = std::find_if(
        kind.rules.begin(), kind.rules.end(),
        [&](const RecordRule& each) { return each.take != nullptr && each.pid == packet.pid; });
    if (rule == kind.rules.end()) {
        // Neither acknowledged nor told to the host, and the pass is used up.
        services_.trace.traceLine("Paquet inconnu: pid = " + std::to_string(packet.pid));
        return;
    }
    takeRecordBy(*rule, numitem, packet);
}

// A record that cannot be decoded is acknowledged all the same, so that the transfer goes on.
void GarminDownloads::takeRecordBy(const RecordRule& rule, std::int16_t numitem,
                                   const LinkPacket& packet) {
    try {
        (this->*rule.take)(numitem, packet.data);
    } catch (const RunTimeError& error) {
        services_.trace.traceLine("Erreur " + std::to_string(error.number()) + " " + error.what());
    }
    link_.acknowledge(rule.pid);
}

std::string GarminDownloads::keepWaypoint(std::vector<Waypoint>& kept, Bytes data) {
    Waypoint waypoint;
    waypoint.GetAttributes(garmin_.capabilities().waypointType, data);
    std::string line = waypoint.getIdent(separator());
    kept.push_back(std::move(waypoint));
    return line;
}

void GarminDownloads::takeWaypoint(std::int16_t numitem, Bytes data) {
    services_.events.WayptData(numitem, keepWaypoint(garmin_.waypoints, data), kDown);
}

void GarminDownloads::takeTrackPoint(std::int16_t numitem, Bytes data) {
    Trace point;
    if (!point.GetAttributes(garmin_.capabilities().trackPointType, data)) {
        return;
    }
    const std::string line = point.getIdent(separator());
    garmin_.tracks.emplace_back(std::move(point));
    services_.events.TrackData(numitem, line, kDown);
}

void GarminDownloads::takeTrackHeader(std::int16_t numitem, Bytes data) {
    TrkHeader header;
    header.GetAttributes(garmin_.capabilities().trackHeaderType, data);
    const std::string line = header.getIdent();
    garmin_.tracks.emplace_back(std::move(header));
    services_.events.TrackHeader(numitem, line, kDown);
}

void GarminDownloads::takeRouteHeader(std::int16_t numitem, Bytes data) {
    ++routeCounter_;
    Route route;
    route.GetAttributes(garmin_.capabilities().routeHeaderType, data);
    if (route.numRte == 0) {
        route.numRte = routeCounter_;
    }
    const std::string line = route.getIdent();
    garmin_.routes.push_back(std::move(route));
    services_.events.RouteHeader(numitem, line, kDown);
}

void GarminDownloads::takeRoutePoint(std::int16_t numitem, Bytes data) {
    Waypoint point;
    point.GetAttributes(garmin_.capabilities().routePointType(), data);
    const std::string line = point.getIdent(separator());
    if (!garmin_.routes.empty()) {
        garmin_.routes.back().AddWaypt(std::move(point));
    }
    services_.events.RouteData(numitem, line, kDown);
}

void GarminDownloads::takeRouteLink(std::int16_t numitem, Bytes data) {
    RteLink link;
    link.GetAttributes(garmin_.capabilities().routeLinkType, data);
    const std::string line = link.getIdent();
    garmin_.routeLinks.push_back(std::move(link));
    services_.events.RouteLink(numitem, line, kDown);
}

void GarminDownloads::takeProximity(std::int16_t numitem, Bytes data) {
    services_.events.ProxData(numitem, keepWaypoint(garmin_.proximities, data), kDown);
}

bool GarminDownloads::getProximites() {
    garmin_.proximities.clear();
    // Here the line is not emptied first, and the count is the second packet or none.
    sendCommand(link_, command::kTransferProximities);
    LinkPacket packet = link_.receive();
    if (packet.pid != pid::kNak) {
        packet = link_.receive();
    }
    if (packet.pid != pid::kRecords) {
        showProtocolError(services_.host, packet.pid);
        return false;
    }
    const std::int16_t count = acceptCount(packet);
    services_.events.StartDownload("P", count, text::kProximitiesHeader);
    LinkPacket last;
    if (!receiveProximities(count, last) && mayGoOn()) {
        if (last.pid == pid::kTransferComplete) {
            services_.host.messageBox(text::kDone, BoxIcon::information);
        } else {
            showProtocolError(services_.host, last.pid);
        }
    }
    services_.events.EndDownload("P");
    return false;
}

// True when all records came: the transfer-complete packet is then left unread.
bool GarminDownloads::receiveProximities(std::int16_t count, LinkPacket& last) {
    static constexpr RecordRule kRule = {pid::kProximityWaypoint, &GarminDownloads::takeProximity};
    for (int i = 1; i <= count; ++i) {
        if (!mayGoOn()) {
            return false;
        }
        last = link_.receive();
        if (last.pid != kRule.pid) {
            return false;
        }
        takeRecordBy(kRule, static_cast<std::int16_t>(i), last);
    }
    return true;
}

}  // namespace marlune
