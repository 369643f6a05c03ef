#include "garmin/Uploads.h"

#include <array>
#include <limits>
#include <variant>

#include "base/RunTimeError.h"
#include "garmin/Messages.h"
#include "garmin/link/PacketIds.h"
#include "garmin/records/Values.h"
#include "host/TransferLog.h"

namespace marlune {
namespace {

const std::string kUp = "U";

// The payload of transfer complete is not the command's code: one zero byte, or nothing for tracks.
constexpr std::array<std::uint8_t, 1> kZero = {0};
constexpr std::array<std::uint8_t, 0> kNothing = {};

// A record of one byte is what an unknown type encodes to; it is not sent.
bool isSingle(const std::vector<std::uint8_t>& record) {
    return record.size() == 1;
}

}  // namespace

bool GarminUploads::announce(const char* letter, std::size_t count, const char* label,
                             TransferLog& log) {
    if (count > static_cast<std::size_t>(std::numeric_limits<std::int16_t>::max())) {
        throw RunTimeError(RunTimeError::overflow);
    }
    log->announced = static_cast<int>(count);
    const std::array<std::uint8_t, 2> payload = {static_cast<std::uint8_t>(count % 256),
                                                 static_cast<std::uint8_t>(count / 256)};
    const LinkPacket reply = sendPacket(pid::kRecords, payload);
    // A silent unit may still be one that listens; a count that the link did not take is lost.
    if (reply.pid == pid::kNak || (reply.pid == 0 && !link_.acknowledges())) {
        showProtocolError(services_.host, reply.pid);
        log.end(endingOf(reply.pid), reply.pid);
        return false;
    }
    services_.events.StartUpload(letter, static_cast<std::int16_t>(count), label);
    return true;
}

bool GarminUploads::finish(const char* letter, std::span<const std::uint8_t> payload, Ending ending,
                           TransferLog& log) {
    const bool ended = link_.send(pid::kTransferComplete, payload);
    services_.events.EndUpload(letter);
    if (ending == Ending::complete && !ended) {
        ending = endingOfSilence();
    }
    return log.end(ending, log->pid) && link_.tellsSuccess();
}

LinkPacket GarminUploads::sendPacket(std::uint8_t pid, std::span<const std::uint8_t> data) {
    const bool taken = link_.send(pid, data);
    if (link_.acknowledges()) {
        return link_.receive();
    }
    return {static_cast<std::uint16_t>(taken ? pid::kAck : 0), {}};
}

Ending GarminUploads::went(const LinkPacket& reply, TransferLog& log) const {
    if (reply.pid == pid::kAck) {
        ++log->transferred;
        log->acknowledged += link_.acknowledges() ? 1 : 0;
        return Ending::complete;
    }
    log->unacknowledged += link_.acknowledges() ? 1 : 0;
    log->pid = reply.pid;
    return endingOf(reply.pid);
}

// Sends a record and shows the protocol error for any answer but an acknowledgement.
Ending GarminUploads::sendRecord(std::uint8_t pid, const Bytes& record, TransferLog& log) {
    if (!maySend()) {
        return endingOfSilence();
    }
    const LinkPacket reply = sendPacket(pid, record);
    if (reply.pid != pid::kAck && maySend()) {
        showProtocolError(services_.host, reply.pid);
    }
    return went(reply, log);
}

bool GarminUploads::SendWaypts(const Upload<Waypoint>& upload) {
    TransferLog log(services_, TransferKind::waypoints, TransferDirection::upload);
    reportReading(log, upload.reading);
    services_.records.waypoints.clear();
    if (!announce("W", upload.records.size(), text::kUploadWaypoints, log)) {
        return false;
    }
    Ending ending = Ending::complete;
    for (std::size_t i = 0; ending == Ending::complete && i < upload.records.size(); ++i) {
        ending = maySend() ? sendWaypoint(static_cast<std::int16_t>(i + 1), upload.records[i], log)
                           : endingOfSilence();
    }
    return finish("W", kZero, ending, log);
}

Ending GarminUploads::sendWaypoint(std::int16_t numitem, const Waypoint& waypoint,
                                   TransferLog& log) {
    const std::string line = waypoint.getIdent(separator());
    services_.records.waypoints.push_back(recordOf(waypoint));
    services_.events.WayptData(numitem, line, kUp);
    const Bytes record = waypoint.Coder(capabilities().waypointType);
    if (isSingle(record)) {
        return Ending::unsendable;
    }
    if (!maySend()) {
        return endingOfSilence();
    }
    const LinkPacket reply = sendPacket(pid::kWaypoint, record);
    const Ending ending = went(reply, log);
    if (reply.pid == 0 && !maySend()) {
        return ending;
    }
    if (reply.pid == 0 && link_.acknowledges()) {
        // The only second chance of any upload, and what comes then is not looked at.
        (void)link_.receive();
        ++log->transferred;
        return Ending::complete;
    }
    if (ending != Ending::complete) {
        services_.host.messageBox(text::kProblem + line, BoxIcon::critical);
    }
    return ending;
}

std::size_t GarminUploads::routeRecords(const std::vector<Route>& routes) const {
    // Under A201 a link stands between two points. The last point has none, but is counted as if.
    const bool links = capabilities().routeProtocol == "A201";
    std::size_t count = 0;
    for (const Route& route : routes) {
        const std::size_t points = route.Waypoints().size();
        count += links ? 2 * points : points + 1;
    }
    return count;
}

bool GarminUploads::SendRoutes(const Upload<Route>& upload) {
    TransferLog log(services_, TransferKind::routes, TransferDirection::upload);
    reportReading(log, upload.reading);
    services_.records.routes.clear();
    if (!announce("R", routeRecords(upload.records), text::kUploadRoutes, log)) {
        return false;
    }
    routeItem_ = 0;
    Ending ending = Ending::complete;
    for (std::size_t i = 0; ending == Ending::complete && i < upload.records.size(); ++i) {
        ending = maySend() ? sendRoute(upload.records[i], log) : endingOfSilence();
    }
    return finish("R", kZero, ending, log);
}

Ending GarminUploads::sendRoute(const Route& route, TransferLog& log) {
    services_.records.routes.push_back(recordOf(route));
    services_.events.RouteHeader(++routeItem_, route.getIdent(), kUp);
    if (!maySend()) {
        return endingOfSilence();
    }
    Ending ending = sendRecord(pid::kRouteHeader, route.Coder(capabilities().routeHeaderType), log);
    const std::vector<Waypoint>& points = route.Waypoints();
    for (std::size_t i = 0; ending == Ending::complete && i < points.size(); ++i) {
        const bool linked = capabilities().routeProtocol == "A201" && i + 1 < points.size();
        ending = sendRoutePoint(points[i], linked, log);
    }
    return ending;
}

Ending GarminUploads::sendRoutePoint(const Waypoint& point, bool linked, TransferLog& log) {
    addPoint(services_.records, recordOf(point));
    services_.events.RouteData(++routeItem_, point.getIdent(separator()), kUp);
    const Bytes record = point.Coder(capabilities().routePointType());
    if (isSingle(record)) {
        return Ending::unsendable;
    }
    const Ending ending = sendRecord(pid::kRoutePoint, record, log);
    return ending == Ending::complete && linked ? sendRouteLink(point, log) : ending;
}

Ending GarminUploads::sendRouteLink(const Waypoint& point, TransferLog& log) {
    RteLink link;
    link.SetIdent(point.getNom());
    addLink(services_.records, recordOf(link));
    services_.events.RouteLink(++routeItem_, link.getIdent(), kUp);
    return maySend() ? sendRecord(pid::kRouteLink, link.Coder(capabilities().routeLinkType), log)
                     : endingOfSilence();
}

bool GarminUploads::SendTraces(const Upload<TrackItem>& upload) {
    TransferLog log(services_, TransferKind::tracks, TransferDirection::upload);
    reportReading(log, upload.reading);
    services_.records.tracks.clear();
    if (!announce("T", upload.records.size(), text::kUploadTracks, log)) {
        return false;
    }
    Ending ending = Ending::complete;
    for (std::size_t i = 0; ending == Ending::complete && i < upload.records.size(); ++i) {
        ending = maySend() ? sendTrackItem(static_cast<std::int16_t>(i + 1), upload.records[i], log)
                           : endingOfSilence();
    }
    return finish("T", kNothing, ending, log);
}

Ending GarminUploads::sendTrackItem(std::int16_t numitem, const TrackItem& item, TransferLog& log) {
    if (const auto* header = std::get_if<TrkHeader>(&item)) {
        return sendTrackHeader(numitem, *header, log);
    }
    return sendTrackPoint(numitem, std::get<Trace>(item), log);
}

Ending GarminUploads::sendTrackHeader(std::int16_t numitem, const TrkHeader& header,
                                      TransferLog& log) {
    const std::string& type = capabilities().trackHeaderType;
    const Bytes record = header.Coder(type);
    services_.records.tracks.push_back(recordOf(header, type));
    services_.events.TrackHeader(numitem, header.getIdent(), kUp);
    return sendRecord(pid::kTrackHeader, record, log);
}

Ending GarminUploads::sendTrackPoint(std::int16_t numitem, const Trace& point, TransferLog& log) {
    Bytes record;
    try {
        record = point.Coder(capabilities().trackPointType);
    } catch (const RunTimeError&) {
        // A type that only comes from units ends the sending as an unknown one does.
        return Ending::unsendable;
    }
    if (isSingle(record)) {
        return Ending::unsendable;
    }
    addPoint(services_.records, recordOf(point));
    services_.events.TrackData(numitem, point.getIdent(separator()), kUp);
    return sendRecord(pid::kTrackPoint, record, log);
}

}  // namespace marlune
