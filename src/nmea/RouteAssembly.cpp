#include "nmea/RouteAssembly.h"

#include <utility>

#include "nmea/Messages.h"

namespace marlune {

void reportRoute(Services& services, Route& route, int& numitem, const char* sens) {
    const auto next = [&] { return static_cast<std::int16_t>(++numitem); };
    services.events.RouteHeader(next(), route.getIdent(), sens);
    for (Waypoint& point : route.Waypoints()) {
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
    Route route = *std::exchange(route_, std::nullopt);
    reportRoute(services_, route, item_, "D");
}

}  // namespace marlune
