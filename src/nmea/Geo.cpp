#include "nmea/Geo.h"

#include <charconv>
#include <cmath>

#include "garmin/values/NumberText.h"

namespace marlune {
namespace {

std::string padded(const std::string& digits, std::size_t width) {
    return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

// Minutes as "00.000", with a point in every locale.
std::string minutesText(float minutes) {
    char text[16];
    const auto end = std::to_chars(text, text + sizeof text, static_cast<double>(minutes),
                                   std::chars_format::fixed, 3)
                         .ptr;
    return padded(std::string(text, end), 6);
}

std::string coordinateText(double degrees, std::size_t degreeDigits, const char* positive,
                           const char* negative) {
    const double size = std::abs(degrees);
    const auto whole = roundTo<std::int16_t>(std::trunc(size));
    const auto minutes = static_cast<float>((size - whole) * 60);
    return padded(std::to_string(whole), degreeDigits) + minutesText(minutes) + ',' +
           (degrees > 0 ? positive : negative);
}

}  // namespace

std::string Geo::DMM() const {
    return coordinateText(latitude_, 2, "N", "S") + ',' + coordinateText(longitude_, 3, "E", "W");
}

}  // namespace marlune
