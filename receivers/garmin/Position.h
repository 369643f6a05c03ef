// Positions in semicircles: 2^31 of them are 180 degrees.
#pragma once

#include <cstdint>

#include "receivers/garmin/Bytes.h"

namespace marlune::receivers::garmin {

// Rounded to the nearest semicircle; 180 degrees and more become the largest number there is.
std::int32_t semicircles(double degrees);
double degreesOf(std::int32_t semicircles);

// Latitude, longitude.
void writePosition(ByteWriter& record, double latitude, double longitude);

template <typename Positioned>
void readPosition(ByteReader& record, Positioned& into) {
    into.latitude = degreesOf(record.number<std::int32_t>());
    into.longitude = degreesOf(record.number<std::int32_t>());
}

}  // namespace marlune::receivers::garmin
