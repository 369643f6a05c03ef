#include "nmea/PositionFields.h"

#include <algorithm>
#include <cstddef>

#include "garmin/values/NumberText.h"

namespace marlune {
namespace {

double readCoordinate(std::string_view field, std::size_t degreeDigits, bool positive) {
    const std::size_t cut = std::min(degreeDigits, field.size());
    const double degrees = readNumber(field.substr(0, cut));
    const double minutes = readNumber(field.substr(cut));
    const double value = toSingle(degrees + minutes / 60);
    return positive ? value : -value;
}

}  // namespace

double readLatitude(std::string_view field, std::string_view hemisphere) {
    return readCoordinate(field, 2, hemisphere == "N");
}

double readLongitude(std::string_view field, std::string_view hemisphere) {
    return readCoordinate(field, 3, hemisphere == "E");
}

float readAltitude(std::string_view field, std::string_view unit) {
    const double value = readNumber(field);
    return toSingle(unit == "F" ? value / 3 : value);
}

}  // namespace marlune
