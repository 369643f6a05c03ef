#include "nmea/SentenceUpload.h"

#include <cstddef>
#include <cstdint>

#include "base/CodePage.h"
#include "nmea/Messages.h"
#include "nmea/RouteAssembly.h"
#include "nmea/Waiting.h"

namespace marlune {
namespace {

// One event for each route and one for each of its points.
std::int16_t eventCount(const std::vector<Route>& routes) {
    std::size_t count = routes.size();
    for (const Route& route : routes) {
        count += route.Waypoints().size();
    }
    return static_cast<std::int16_t>(count);
}

void sendEnd(Services& services, PortLease& port, const UploadDialect& dialect) {
    if (!dialect.endCommand.empty()) {
        sendSentence(services, port, dialect.endCommand);
    }
}

}  // namespace

void sendSentence(Services& services, PortLease& port, std::string_view sentence) {
    if (port.holds()) {
        sendText(port, services.trace, fromAnsi(sentence));
    }
}

void uploadWaypointSentences(Services& services, PortLease& port, const UploadDialect& dialect,
                             std::vector<Waypoint> waypoints) {
    services.events.StartUpload("W", static_cast<std::int16_t>(waypoints.size()),
                                nmeatext::kWaypoints);
    std::int16_t numitem = 0;
    for (Waypoint& waypoint : waypoints) {
        if (!mayGoOn(port, services.host)) {
            break;
        }
        sendSentence(services, port, dialect.waypoint(waypoint));
        services.events.WayptData(++numitem, waypoint.getIdent(services.host.decimalSeparator()),
                                  "U");
    }
    sendEnd(services, port, dialect);
    services.events.EndUpload("W");
}

void uploadRouteSentences(Services& services, PortLease& port, const UploadDialect& dialect,
                          std::vector<Route> routes) {
    services.events.StartUpload("R", eventCount(routes), nmeatext::kUploadRoutes);
    int numitem = 0;
    for (Route& route : routes) {
        if (!mayGoOn(port, services.host)) {
            break;
        }
        for (const Waypoint& point : route.Waypoints()) {
            sendSentence(services, port, dialect.waypoint(point));
        }
        for (const std::string& sentence : dialect.route(route)) {
            sendSentence(services, port, sentence);
        }
        reportRoute(services, route, numitem, "U");
    }
    sendEnd(services, port, dialect);
    services.events.EndUpload("R");
}

}  // namespace marlune
