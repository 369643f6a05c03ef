#include "nmea/SentenceUpload.h"

#include <cstddef>
#include <cstdint>

#include "base/CodePage.h"
#include "garmin/records/Values.h"
#include "nmea/Messages.h"
#include "nmea/RouteAssembly.h"
#include "nmea/Waiting.h"

namespace marlune {
namespace {

// One for each route and one for each of its points.
int recordCount(const std::vector<Route>& routes) {
    std::size_t count = routes.size();
    for (const Route& route : routes) {
        count += route.Waypoints().size();
    }
    return static_cast<int>(count);
}

void sendEnd(Services& services, PortLease& port, const UploadDialect& dialect) {
    if (!dialect.endCommand.empty() && !port.isGone()) {
        sendSentence(services, port, dialect.endCommand);
    }
}

// A route's points, then the sentences that name them. False when the system did not take one.
bool sendRoute(Services& services, PortLease& port, const UploadDialect& dialect,
               const Route& route) {
    for (const Waypoint& point : route.Waypoints()) {
        if (!sendSentence(services, port, dialect.waypoint(point))) {
            return false;
        }
    }
    for (const std::string& sentence : dialect.route(route)) {
        if (!sendSentence(services, port, sentence)) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool sendSentence(Services& services, PortLease& port, std::string_view sentence) {
    return port.holds() && sendText(port, services.trace, fromAnsi(sentence));
}

void uploadWaypointSentences(Services& services, PortLease& port, const UploadDialect& dialect,
                             const Upload<Waypoint>& upload) {
    TransferLog log(services, TransferKind::waypoints, TransferDirection::upload);
    reportReading(log, upload.reading);
    services.records.waypoints.clear();
    const auto count = static_cast<std::int16_t>(upload.records.size());
    log->announced = static_cast<int>(upload.records.size());
    services.events.StartUpload("W", count, nmeatext::kWaypoints);
    std::int16_t numitem = 0;
    bool taken = true;
    for (const Waypoint& waypoint : upload.records) {
        taken = maySend(port, services.host) &&
                sendSentence(services, port, dialect.waypoint(waypoint));
        if (!taken) {
            break;
        }
        ++log->transferred;
        services.records.waypoints.push_back(recordOf(waypoint));
        services.events.WayptData(++numitem, waypoint.getIdent(services.host.decimalSeparator()),
                                  "U");
    }
    sendEnd(services, port, dialect);
    services.events.EndUpload("W");
    log.end(endingOfUpload(port, services.host, taken));
}

void uploadRouteSentences(Services& services, PortLease& port, const UploadDialect& dialect,
                          const Upload<Route>& upload) {
    TransferLog log(services, TransferKind::routes, TransferDirection::upload);
    reportReading(log, upload.reading);
    services.records.routes.clear();
    log->announced = recordCount(upload.records);
    services.events.StartUpload("R", static_cast<std::int16_t>(*log->announced),
                                nmeatext::kUploadRoutes);
    int numitem = 0;
    bool taken = true;
    for (const Route& route : upload.records) {
        taken = maySend(port, services.host) && sendRoute(services, port, dialect, route);
        if (!taken) {
            break;
        }
        reportRoute(services, route, numitem, "U");
        log->transferred = numitem;
    }
    sendEnd(services, port, dialect);
    services.events.EndUpload("R");
    log.end(endingOfUpload(port, services.host, taken));
}

}  // namespace marlune
