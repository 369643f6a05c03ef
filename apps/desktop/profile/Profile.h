// A track's altitudes over the distance along it. Numbers only: no widget.
#pragma once

#include <QtCore/QPointF>
#include <vector>

#include "marlune/Records.h"

namespace marlune::desktop {

class Profile {
public:
    Profile() = default;
    explicit Profile(const TrackRecord& track);

    // Whether any point has an altitude.
    [[nodiscard]] bool isEmpty() const { return marks_.empty(); }
    [[nodiscard]] double length() const { return isEmpty() ? 0 : marks_.back().distance; }
    [[nodiscard]] double lowest() const { return lowest_; }
    [[nodiscard]] double highest() const { return highest_; }

    // A point of the track that has an altitude.
    struct Mark {
        double distance = 0;  // metres from the track's first point
        double altitude = 0;  // metres
        int point = 0;        // its number within the track, from 0
    };
    [[nodiscard]] const std::vector<Mark>& marks() const { return marks_; }
    // The mark nearest to a distance; there must be one.
    [[nodiscard]] int nearest(double distance) const;
    // The curve in no more than twice `columns` points: the lowest and the highest of each column
    // stay, so that no summit is lost.
    [[nodiscard]] std::vector<QPointF> curve(int columns) const;

private:
    std::vector<Mark> marks_;
    double lowest_ = 0;
    double highest_ = 0;
};

}  // namespace marlune::desktop
