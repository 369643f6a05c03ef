#include "garmin/values/DegreeMinuteText.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "garmin/values/NumberText.h"

namespace marlune {

std::string degreeMinuteText(double degrees, char decimalSeparator) {
    const double whole = std::trunc(degrees);
    if (!(std::abs(whole) <= std::numeric_limits<std::int16_t>::max())) {
        return {};
    }
    const double minutes = roundHalfEven(std::abs(degrees - whole) * 60, 5);
    return std::to_string(static_cast<std::int16_t>(whole)) + "° " +
           numberText(minutes, decimalSeparator);
}

}  // namespace marlune
