// Positions and altitudes in the fields of received sentences.
#pragma once

#include <cstddef>
#include <string_view>

#include "garmin/records/ExactPosition.h"
#include "nmea/Sentence.h"

namespace marlune {

// "4807.038", "N": degrees, two or three digits for latitude and longitude, then minutes. The
// result has single precision (about a metre), as receivers have always been read. Any hemisphere
// but "N" and "E" is negative, also a missing one. Raise overflow when a single cannot hold it.
double readLatitude(std::string_view field, std::string_view hemisphere);
double readLongitude(std::string_view field, std::string_view hemisphere);

// Metres. "F" is feet, taken as three to the metre: hosts know the altitudes of this rough factor
// from all earlier downloads, and compare. Any other unit is metres. Raises overflow when a single
// cannot hold it.
float readAltitude(std::string_view field, std::string_view unit);

// The same at full precision: latitude, hemisphere, longitude and hemisphere from that field on,
// and no altitude.
ExactPosition readExactPosition(const Sentence& sentence, std::size_t field);
// None for an empty field; a foot is a foot here.
std::optional<float> readExactAltitude(std::string_view field, std::string_view unit);

}  // namespace marlune
