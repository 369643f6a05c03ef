#include "nmea/RouteAssembly.h"

#include <string_view>
#include <utility>

#include "garmin/records/Values.h"
#include "nmea/Messages.h"

namespace marlune {
namespace {

// The sentences of waypoints carry no symbol and no display option, and those of some receivers no
// altitude, which is 0 then.
WaypointRecord heardRecordOf(const Waypoint& point) {
    WaypointRecord record = recordOf(point);
    record.symbol.reset();
    record.display.reset();
    if (point.altitude == 0) {
        record.altitude.reset();
    }
    return record;
}

}  // namespace

void reportRoute(Services& services, const Route& route, int& numitem, const char* sens) {
    const bool heard = std::string_view(sens) == "D";
    const auto next = [&] { return static_cast<std::int16_t>(++numitem); };
    services.records.routes.push_back(recordOf(route));
    services.events.RouteHeader(next(), route.getIdent(), sens);
    for (const Waypoint& point : route.Waypoints()) {
        addPoint(services.records, heard ? heardRecordOf(point) : recordOf(point));
        services.events.RouteData(next(), point.getIdent(services.host.decimalSeparator()), sens);
    }
}

void RouteAssembly::take(const RoutePhrase& phrase) {
    if (!route_ || phrase.index == 1 || phrase.number != route_->numRte) {
        finish();
        route_.emplace();
        route_->numRte = phrase.number;
        route_->setDescription(phrase.name.empty() ? "ROUTE " + std::to_string(phrase.number)
                                                   : phrase.name);
    }
    addPoints(phrase);
    if (phrase.index == phrase.total) {
        finish();
    }
}

void RouteAssembly::addPoints(const RoutePhrase& phrase) {
    for (const std::string& name : phrase.points) {
        const auto known = waypoints_.find(name);
        if (known == waypoints_.end()) {
            services_.trace.traceLine(nmeatext::kUnknownPoint + name);
            ++log_->unknown;
        } else if (route_->Waypoints().size() < kMostPoints) {
            route_->AddWaypt(known->second);
        }
    }
}

void RouteAssembly::finish() {
    if (!route_) {
        return;
    }
    found_ = true;
    const Route route = *std::exchange(route_, std::nullopt);
    reportRoute(services_, route, item_, "D");
    log_->transferred = item_;
}

}  // namespace marlune
