// Garmin positions: signed 32-bit semicircles, of which 2^31 are 180 degrees.
#pragma once

#include <cstdint>

namespace marlune {

// Degrees per semicircle, a hair above 180 / 2^31. This literal, not the exact ratio, makes the
// coordinates that hosts know.
constexpr double kDegreesPerSemicircle = 8.38190317153931e-8;

double degreesFromSemicircles(std::int32_t semicircles);

// Truncated towards zero: with the large factor 45 degrees come out as 536870911, one short.
// Raises overflow when the result is beyond 32 bits or not a number.
std::int32_t semicirclesFromDegrees(double degrees);

}  // namespace marlune
