#include "nmea/RouteAssembly.h"

#include <utility>

#include "garmin/records/Values.h"
#include "nmea/Messages.h"

namespace marlune {

void reportRoute(Services& services, const Route& route, int& numitem, const char* sens) {
    const auto next = [&] { return static_cast<std::int16_t>(++numitem); };
    services.records.routes.push_back(recordOf(route));
    services.events.RouteHeader(next(), route.getIdent(), sens);
    for (const Waypoint& point : route.Waypoints()) {
        addPoint(services.records, recordOf(point));
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
