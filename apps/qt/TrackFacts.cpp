#include "marlune/qt/TrackFacts.h"

#include <algorithm>

#include "Ground.h"

namespace marlune::qt {
namespace {

// Climb and descent from one turning point to the next. A turn counts once the altitude has come
// back from it by so much; so the noise of single points makes none.
class Ascent {
public:
    // The first altitude behind a gap: what lies between is no part of the track.
    void begin(double altitude) {
        end();
        turn_ = extreme_ = altitude;
    }
    void add(double altitude) {
        const bool rising = extreme_ >= turn_;
        const double back = rising ? extreme_ - altitude : altitude - extreme_;
        if (back >= kNoise) {
            end();
            turn_ = extreme_;
            extreme_ = altitude;
        } else if (back < 0) {
            extreme_ = altitude;
        }
    }
    void end() {
        if (const double change = extreme_ - turn_; change >= kNoise) {
            climb += change;
        } else if (change <= -kNoise) {
            descent -= change;
        }
        turn_ = extreme_;
    }

    double climb = 0;
    double descent = 0;

private:
    static constexpr double kNoise = 5;

    double turn_ = 0;
    double extreme_ = 0;
};

void addAltitudes(TrackFacts& facts, const TrackRecord& track) {
    Ascent ascent;
    bool begins = true;
    for (const TrackPointRecord& point : track.points) {
        begins = begins || point.segmentStart;
        if (point.altitude) {
            begins ? ascent.begin(*point.altitude) : ascent.add(*point.altitude);
            begins = false;
            facts.lowest = std::min(facts.lowest.value_or(*point.altitude), *point.altitude);
            facts.highest = std::max(facts.highest.value_or(*point.altitude), *point.altitude);
        }
    }
    ascent.end();
    if (facts.lowest) {
        facts.climb = ascent.climb;
        facts.descent = ascent.descent;
    }
}

void addTimes(TrackFacts& facts, const TrackRecord& track) {
    std::optional<double> last;
    for (const TrackPointRecord& point : track.points) {
        if (point.time) {
            facts.start = facts.start ? facts.start : point.time;
            last = point.time;
        }
    }
    if (last) {
        facts.duration = *last - *facts.start;
    }
}

}  // namespace

TrackFacts factsOf(const TrackRecord& track) {
    TrackFacts facts;
    facts.points = static_cast<int>(track.points.size());
    if (facts.points > 0) {
        facts.length = distancesAlong(track).back();
    }
    addAltitudes(facts, track);
    addTimes(facts, track);
    return facts;
}

std::vector<double> distancesAlong(const TrackRecord& track) {
    std::vector<double> distances(track.points.size(), 0.0);
    for (std::size_t i = 1; i < track.points.size(); ++i) {
        const TrackPointRecord& point = track.points[i];
        const double step = point.segmentStart ? 0 : groundDistance(track.points[i - 1], point);
        distances[i] = distances[i - 1] + step;
    }
    return distances;
}

}  // namespace marlune::qt
