#include "garmin/values/Semicircles.h"

#include <cmath>

#include "garmin/values/NumberText.h"

namespace marlune {

double degreesFromSemicircles(std::int32_t semicircles) {
    return semicircles * kDegreesPerSemicircle;
}

std::int32_t semicirclesFromDegrees(double degrees) {
    return roundTo<std::int32_t>(std::trunc(degrees / kDegreesPerSemicircle));
}

}  // namespace marlune
