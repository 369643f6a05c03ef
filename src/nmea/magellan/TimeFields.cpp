#include "nmea/magellan/TimeFields.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "garmin/values/NumberText.h"

namespace marlune {

double readTimeOfDay(std::string_view field) {
    constexpr std::size_t kSecondsWidth = 5;
    const std::string_view minutesOn = field.substr(std::min<std::size_t>(2, field.size()));
    const double hours = std::trunc(readNumber(field.substr(0, 2)));
    const double minutes = std::trunc(readNumber(minutesOn.substr(0, 2)));
    const double seconds =
        toSingle(readNumber(field.substr(field.size() - std::min(kSecondsWidth, field.size()))));
    return hours / 24 + minutes / 24 / 60 + seconds / 24 / 3600;
}

}  // namespace marlune
