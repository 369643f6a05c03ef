// A coordinate in degrees and minutes.
#pragma once

#include <string>

namespace marlune {

// "45° 30.25": the whole degrees, truncated towards zero, then the minutes to 5 decimals. A
// coordinate between -1 and 0 loses its sign: -0.25 is "0° 15". What has more whole degrees than a
// 16-bit number holds is no coordinate and gives an empty text.
std::string degreeMinuteText(double degrees, char decimalSeparator);

}  // namespace marlune
