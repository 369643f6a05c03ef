#include "nmea/PositionFields.h"

#include <algorithm>
#include <cstddef>

#include "garmin/values/NumberText.h"

namespace marlune {
namespace {

constexpr std::size_t kLatitudeDigits = 2;  // of the degrees
constexpr std::size_t kLongitudeDigits = 3;

double readDegrees(std::string_view field, std::size_t degreeDigits) {
    const std::size_t cut = std::min(degreeDigits, field.size());
    const double degrees = readNumber(field.substr(0, cut));
    const double minutes = readNumber(field.substr(cut));
    return degrees + minutes / 60;
}

double withSign(double value, bool positive) {
    return positive ? value : -value;
}

}  // namespace

double readLatitude(std::string_view field, std::string_view hemisphere) {
    return withSign(toSingle(readDegrees(field, kLatitudeDigits)), hemisphere == "N");
}

double readLongitude(std::string_view field, std::string_view hemisphere) {
    return withSign(toSingle(readDegrees(field, kLongitudeDigits)), hemisphere == "E");
}

float readAltitude(std::string_view field, std::string_view unit) {
    const double value = readNumber(field);
    return toSingle(unit == "F" ? value / 3 : value);
}

ExactPosition readExactPosition(const Sentence& sentence, std::size_t field) {
    const auto at = [&](std::size_t i) { return sentence.field(field + i); };
    return {.latitude = withSign(readDegrees(at(0), kLatitudeDigits), at(1) == "N"),
            .longitude = withSign(readDegrees(at(2), kLongitudeDigits), at(3) == "E"),
            .altitude = std::nullopt};
}

std::optional<float> readExactAltitude(std::string_view field, std::string_view unit) {
    constexpr double kMetresPerFoot = 0.3048;
    if (field.empty()) {
        return std::nullopt;
    }
    const double value = readNumber(field);
    return toSingle(unit == "F" ? value * kMetresPerFoot : value);
}

}  // namespace marlune
