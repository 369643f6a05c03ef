#include "receivers/garmin/Position.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace marlune::receivers::garmin {
namespace {

constexpr double kHalfTurn = 2147483648.0;

}  // namespace

std::int32_t semicircles(double degrees) {
    using Limits = std::numeric_limits<std::int32_t>;
    const double rounded = std::round(degrees / 180.0 * kHalfTurn);
    return static_cast<std::int32_t>(std::clamp(rounded, static_cast<double>(Limits::min()),
                                                static_cast<double>(Limits::max())));
}

double degreesOf(std::int32_t semicircles) {
    return semicircles * (180.0 / kHalfTurn);
}

void writePosition(ByteWriter& record, double latitude, double longitude) {
    record.number(semicircles(latitude)).number(semicircles(longitude));
}

}  // namespace marlune::receivers::garmin
