// Moves the times of records that a receiver reports whole rounds of its week counter too early.
#pragma once

#include <cstddef>
#include <optional>

#include "marlune/Records.h"

namespace marlune {

class DateFix {
public:
    // Nothing leaves the times alone.
    void setReference(std::optional<double> reference);

    // Moves what came since the last call; transfer is a number that changes with each transfer.
    // What was moved once stays, so a call costs as much as there is new.
    void apply(Records& records, unsigned transfer);

    // How many were moved in the present transfer.
    [[nodiscard]] int moved() const { return moved_; }

private:
    void fix(std::optional<double>& time);
    void fixWaypoints(std::vector<WaypointRecord>& waypoints, std::size_t& done);

    std::optional<double> reference_;
    unsigned transfer_ = 0;
    int moved_ = 0;
    // So many of each list were looked at; of tracks and routes, and of the last one's points.
    std::size_t waypoints_ = 0;
    std::size_t proximities_ = 0;
    std::size_t tracks_ = 0;
    std::size_t trackPoints_ = 0;
    std::size_t routes_ = 0;
    std::size_t routePoints_ = 0;
};

}  // namespace marlune
