#include "control/DateFix.h"

#include "marlune/RecordFiles.h"

namespace marlune {
namespace {

// The points that came since the last call: from the point behind the last one seen, in the track
// or route that was the last then, to the end.
template <class List, class Visit>
void forNewPoints(List& list, std::size_t& seen, std::size_t& seenPoints, const Visit& visit) {
    for (std::size_t i = seen == 0 ? 0 : seen - 1; i < list.size(); ++i) {
        auto& points = list[i].points;
        for (std::size_t j = i + 1 == seen ? seenPoints : 0; j < points.size(); ++j) {
            visit(points[j]);
        }
    }
    seen = list.size();
    seenPoints = list.empty() ? 0 : list.back().points.size();
}

}  // namespace

void DateFix::setReference(std::optional<double> reference) {
    reference_ = reference;
}

void DateFix::apply(Records& records, unsigned transfer) {
    if (transfer != transfer_) {
        const auto reference = reference_;
        *this = DateFix();
        reference_ = reference;
        transfer_ = transfer;
    }
    if (!reference_) {
        return;
    }
    fixWaypoints(records.waypoints, waypoints_);
    fixWaypoints(records.proximities, proximities_);
    forNewPoints(records.tracks, tracks_, trackPoints_,
                 [&](TrackPointRecord& point) { fix(point.time); });
    forNewPoints(records.routes, routes_, routePoints_,
                 [&](RoutePointRecord& point) { fix(point.point.time); });
    if (records.fix) {
        fix(records.fix->time);
    }
}

void DateFix::fix(std::optional<double>& time) {
    moved_ += fixRolledOverDate(time, *reference_) ? 1 : 0;
}

void DateFix::fixWaypoints(std::vector<WaypointRecord>& waypoints, std::size_t& done) {
    for (; done < waypoints.size(); ++done) {
        fix(waypoints[done].time);
    }
}

}  // namespace marlune
