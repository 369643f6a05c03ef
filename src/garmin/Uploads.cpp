#include "garmin/Uploads.h"

#include <array>
#include <limits>
#include <utility>

#include "base/RunTimeError.h"
#include "garmin/Messages.h"
#include "garmin/link/PacketIds.h"

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

bool GarminUploads::announce(const std::string& letter, std::size_t count, const char* label) {
    if (count > static_cast<std::size_t>(std::numeric_limits<std::int16_t>::max())) {
        throw RunTimeError(RunTimeError::overflow);
    }
    const std::array<std::uint8_t, 2> payload = {static_cast<std::uint8_t>(count % 256),
                                                 static_cast<std::uint8_t>(count / 256)};
    const LinkPacket reply = sendPacket(pid::kRecords, payload);
    // A silent unit may still be one that listens; a count that the link did not take is lost.
    if (reply.pid == pid::kNak || (reply.pid == 0 && !link_.acknowledges())) {
        showProtocolError(services_.host, reply.pid);
        return false;
    }
    services_.events.StartUpload(letter, static_cast<std::int16_t>(count), label);
    return true;
}

bool GarminUploads::finish(const std::string& letter, std::span<const std::uint8_t> payload,
                           bool allSent) {
    const bool ended = link_.send(pid::kTransferComplete, payload);
    services_.events.EndUpload(letter);
    return allSent && ended && link_.tellsSuccess();
}

LinkPacket GarminUploads::sendPacket(std::uint8_t pid, std::span<const std::uint8_t> data) {
    const bool taken = link_.send(pid, data);
    if (link_.acknowledges()) {
        return link_.receive();
    }
    return {static_cast<std::uint16_t>(taken ? pid::kAck : 0), {}};
}

// Sends a record and shows the protocol error for any answer but an acknowledgement.
bool GarminUploads::sendRecord(std::uint8_t pid, const Bytes& record) {
    const LinkPacket reply = sendPacket(pid, record);
    if (reply.pid == pid::kAck) {
        return true;
    }
    if (mayGoOn()) {
        showProtocolError(services_.host, reply.pid);
    }
    return false;
}

bool GarminUploads::SendWaypts() {
    if (!announce("W", garmin_.waypoints.size(), text::kUploadWaypoints)) {
        return false;
    }
    // Handlers may start another transfer that replaces the collection: hence the index and copies.
    bool going = true;
    for (std::size_t i = 0; going && i < garmin_.waypoints.size(); ++i) {
        going = mayGoOn() && sendWaypoint(static_cast<std::int16_t>(i + 1), garmin_.waypoints[i]);
    }
    return finish("W", kZero, going);
}

bool GarminUploads::sendWaypoint(std::int16_t numitem, Waypoint waypoint) {
    const std::string line = waypoint.getIdent(separator());
    services_.events.WayptData(numitem, line, kUp);
    const Bytes record = waypoint.Coder(garmin_.capabilities().waypointType);
    if (isSingle(record) || !mayGoOn()) {
        return false;
    }
    const LinkPacket reply = sendPacket(pid::kWaypoint, record);
    if (reply.pid == pid::kAck) {
        return true;
    }
    if (reply.pid == 0 && link_.acknowledges()) {
        // The only second chance of any upload, and what comes then is not looked at.
        (void)link_.receive();
        return true;
    }
    services_.host.messageBox(text::kProblem + line, BoxIcon::critical);
    return false;
}

std::size_t GarminUploads::routeRecords() const {
    // Under A201 a link stands between two points. The last point has none, but is counted as if.
    const bool links = garmin_.capabilities().routeProtocol == "A201";
    std::size_t count = 0;
    for (const Route& route : garmin_.routes) {
        const std::size_t points = route.Waypoints().size();
        count += links ? 2 * points : points + 1;
    }
    return count;
}

bool GarminUploads::SendRoutes() {
    if (!announce("R", routeRecords(), text::kUploadRoutes)) {
        return false;
    }
    routeItem_ = 0;
    bool going = true;
    for (std::size_t i = 0; going && i < garmin_.routes.size(); ++i) {
        going = mayGoOn() && sendRoute(garmin_.routes[i]);
    }
    return finish("R", kZero, going);
}

bool GarminUploads::sendRoute(Route route) {
    services_.events.RouteHeader(++routeItem_, route.getIdent(), kUp);
    if (!mayGoOn() ||
        !sendRecord(pid::kRouteHeader, route.Coder(garmin_.capabilities().routeHeaderType))) {
        return false;
    }
    int left = static_cast<int>(route.Waypoints().size());
    for (const Waypoint& each : route.Waypoints()) {
        Waypoint point = each;
        if (!sendRoutePoint(point, --left)) {
            return false;
        }
    }
    return true;
}

bool GarminUploads::sendRoutePoint(Waypoint& point, int pointsLeft) {
    services_.events.RouteData(++routeItem_, point.getIdent(separator()), kUp);
    const GpsCapability& capability = garmin_.capabilities();
    const Bytes record = point.Coder(capability.routePointType());
    if (isSingle(record) || !mayGoOn() || !sendRecord(pid::kRoutePoint, record)) {
        return false;
    }
    const bool linked = capability.routeProtocol == "A201" && pointsLeft > 0;
    return !linked || sendRouteLink(point);
}

bool GarminUploads::sendRouteLink(const Waypoint& point) {
    RteLink link;
    link.SetIdent(point.getNom());
    services_.events.RouteLink(++routeItem_, link.getIdent(), kUp);
    return mayGoOn() &&
           sendRecord(pid::kRouteLink, link.Coder(garmin_.capabilities().routeLinkType));
}

bool GarminUploads::SendTraces() {
    if (!announce("T", garmin_.tracks.size(), text::kUploadTracks)) {
        return false;
    }
    bool going = true;
    for (std::size_t i = 0; going && i < garmin_.tracks.size(); ++i) {
        going = mayGoOn() && sendTrackItem(static_cast<std::int16_t>(i + 1), garmin_.tracks[i]);
    }
    return finish("T", kNothing, going);
}

bool GarminUploads::sendTrackItem(std::int16_t numitem, TrackItem item) {
    if (auto* header = std::get_if<TrkHeader>(&item)) {
        return sendTrackHeader(numitem, *header);
    }
    return sendTrackPoint(numitem, std::get<Trace>(item));
}

bool GarminUploads::sendTrackHeader(std::int16_t numitem, TrkHeader& header) {
    const Bytes record = header.Coder(garmin_.capabilities().trackHeaderType);
    services_.events.TrackHeader(numitem, header.getIdent(), kUp);
    return mayGoOn() && sendRecord(pid::kTrackHeader, record);
}

bool GarminUploads::sendTrackPoint(std::int16_t numitem, Trace& point) {
    Bytes record;
    try {
        record = point.Coder(garmin_.capabilities().trackPointType);
    } catch (const RunTimeError&) {
        // A type that only comes from units ends the sending as an unknown one does.
        return false;
    }
    if (isSingle(record)) {
        return false;
    }
    services_.events.TrackData(numitem, point.getIdent(separator()), kUp);
    return mayGoOn() && sendRecord(pid::kTrackPoint, record);
}

}  // namespace marlune
