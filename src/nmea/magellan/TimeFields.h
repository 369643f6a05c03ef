// The time of day in a sentence: "hhmmss.ss".
#pragma once

#include <string_view>

namespace marlune {

// As a fraction of a day. Both raise overflow when a single cannot hold the seconds.

// Of a track point. Seconds are the last five characters, whatever stands there: "123456" without a
// fraction has 23456 of them, and that is meant.
double readTrackTime(std::string_view field);

// Of a fix. Seconds are all that follows the minutes: receivers differ in the decimals that they
// give, and many give none.
double readFixTime(std::string_view field);

}  // namespace marlune
