// The record that an event tells of, for hosts that hand on values beside the event's texts.
#pragma once

#include "control/SurfaceRows.h"
#include "marlune/Records.h"

namespace marlune::surface {

namespace detail {

template <class Record, class Visit>
void visitLast(const std::vector<Record>& records, const Visit& visit) {
    if (!records.empty()) {
        visit(records.back());
    }
}

}  // namespace detail

// Calls the visitor with the record while the event's handler runs: it is the last of its kind
// then. Events that tell of none call nobody. A track's or route's head has the points that came
// so far; a link is that of the route's last point.
template <class Visit>
void visitTold(Tells tells, const Records& records, const Visit& visit) {
    const auto ofLastTrack = [&](const TrackRecord& track) {
        detail::visitLast(track.points, visit);
    };
    const auto ofLastRoute = [&](const RouteRecord& route) {
        detail::visitLast(route.points, visit);
    };
    const auto link = [&](const RoutePointRecord& point) {
        if (point.link) {
            visit(*point.link);
        }
    };
    switch (tells) {
        case Tells::waypoint:
            return detail::visitLast(records.waypoints, visit);
        case Tells::proximity:
            return detail::visitLast(records.proximities, visit);
        case Tells::track:
            return detail::visitLast(records.tracks, visit);
        case Tells::trackPoint:
            return detail::visitLast(records.tracks, ofLastTrack);
        case Tells::route:
            return detail::visitLast(records.routes, visit);
        case Tells::routePoint:
            return detail::visitLast(records.routes, ofLastRoute);
        case Tells::routeLink:
            return detail::visitLast(records.routes, [&](const RouteRecord& route) {
                detail::visitLast(route.points, link);
            });
        case Tells::fix:
            if (records.fix) {
                visit(*records.fix);
            }
            return;
        default:
            return;
    }
}

}  // namespace marlune::surface
