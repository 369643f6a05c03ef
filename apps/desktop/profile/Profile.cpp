#include "desktop/profile/Profile.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

#include "marlune/qt/TrackFacts.h"

namespace marlune::desktop {
namespace {

QPointF curvePoint(const Profile::Mark& mark) {
    return {mark.distance, mark.altitude};
}

bool isLower(const Profile::Mark& left, const Profile::Mark& right) {
    return left.altitude < right.altitude;
}

}  // namespace

Profile::Profile(const TrackRecord& track) {
    const std::vector<double> distances = qt::distancesAlong(track);
    for (std::size_t i = 0; i < track.points.size(); ++i) {
        if (const auto altitude = track.points[i].altitude) {
            marks_.push_back({distances[i], *altitude, static_cast<int>(i)});
        }
    }
    if (!marks_.empty()) {
        const auto [low, high] = std::minmax_element(marks_.begin(), marks_.end(), isLower);
        lowest_ = low->altitude;
        highest_ = high->altitude;
    }
}

int Profile::nearest(double distance) const {
    const auto behind =
        std::lower_bound(marks_.begin(), marks_.end(), distance,
                         [](const Mark& mark, double d) { return mark.distance < d; });
    if (behind == marks_.begin()) {
        return 0;
    }
    const auto before = behind - 1;
    const bool isBehindNearer =
        behind != marks_.end() && behind->distance - distance < distance - before->distance;
    return static_cast<int>((isBehindNearer ? behind : before) - marks_.begin());
}

std::vector<QPointF> Profile::curve(int columns) const {
    std::vector<QPointF> curve;
    if (marks_.size() <= 2 * static_cast<std::size_t>(columns)) {
        std::transform(marks_.begin(), marks_.end(), std::back_inserter(curve), curvePoint);
        return curve;
    }
    const auto columnOf = [&](const Mark& mark) {
        const double column = std::floor(mark.distance / std::max(length(), 1.0) * columns);
        return std::min(column, columns - 1.0);  // the end belongs to the last one
    };
    for (auto begin = marks_.begin(); begin != marks_.end();) {
        const auto end = std::find_if(begin, marks_.end(), [&](const Mark& mark) {
            return columnOf(mark) > columnOf(*begin);
        });
        auto [low, high] = std::minmax_element(begin, end, isLower);
        curve.push_back(curvePoint(low < high ? *low : *high));
        if (low != high) {
            curve.push_back(curvePoint(low < high ? *high : *low));
        }
        begin = end;
    }
    return curve;
}

}  // namespace marlune::desktop
