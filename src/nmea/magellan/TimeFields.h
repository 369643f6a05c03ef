// The time of day in a sentence: "hhmmss.ss".
#pragma once

#include <string_view>

namespace marlune {

// As a date value: date is the day (whole days since 30/12/1899). Both raise overflow when a single
// cannot hold the seconds.

// Of a track point. Seconds are the last five characters, whatever stands there: "123456" without a
// fraction has 23456 of them. The receivers that this is written for always send the fraction.
double readTrackTime(double date, std::string_view field);

// Of a fix. Seconds are all that follows the minutes: receivers differ in the decimals that they
// give, and many give none.
double readFixTime(double date, std::string_view field);

}  // namespace marlune
