#include "nmea/magellan/TimeFields.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "garmin/values/NumberText.h"

namespace marlune {
namespace {

std::string_view from(std::string_view field, std::size_t position) {
    return field.substr(std::min(position, field.size()));
}

double timeAt(double date, std::string_view field, std::string_view secondsText) {
    const double hours = std::trunc(readNumber(field.substr(0, 2)));
    const double minutes = std::trunc(readNumber(from(field, 2).substr(0, 2)));
    const double seconds = toSingle(readNumber(secondsText));
    // Summed in this order: hosts see every digit, and another order gives other last ones.
    return date + hours / 24 + minutes / 24 / 60 + seconds / 24 / 3600;
}

}  // namespace

double readTrackTime(double date, std::string_view field) {
    constexpr std::size_t kSecondsWidth = 5;
    return timeAt(date, field, from(field, field.size() - std::min(kSecondsWidth, field.size())));
}

double readFixTime(double date, std::string_view field) {
    return timeAt(date, field, from(field, 4));
}

}  // namespace marlune
