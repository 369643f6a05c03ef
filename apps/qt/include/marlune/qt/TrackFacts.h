// What a track tells of itself: how long, how far up and down, how fast. And the profile of its
// altitudes.
#pragma once

#include <optional>
#include <vector>

#include "marlune/Records.h"
#include "marlune/qt/Export.h"

namespace marlune::qt {

// Lengths and heights in metres, times in seconds. Gaps between segments count for nothing.
struct TrackFacts {
    int points = 0;
    double length = 0;  // over ground, on the WGS 84 sphere of mean radius
    // Up and down, without the noise of single points: changes of less than 5 m do not count.
    // Nothing when no point has an altitude.
    std::optional<double> climb;
    std::optional<double> descent;
    std::optional<float> lowest;
    std::optional<float> highest;
    std::optional<double> start;     // since 1970-01-01 00:00:00 UTC
    std::optional<double> duration;  // from the first time to the last
};

MARLUNE_QT_EXPORT TrackFacts factsOf(const TrackRecord& track);

// The distance of each point from the track's first, along the track, in metres: as many numbers as
// points.
MARLUNE_QT_EXPORT std::vector<double> distancesAlong(const TrackRecord& track);

}  // namespace marlune::qt
