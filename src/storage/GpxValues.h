// The values of GPX elements: numbers, times and texts.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace marlune {

// A whole field as a number, with either decimal separator; none when it is anything else, or not
// finite.
std::optional<double> gpxNumber(std::string_view text);

// Whether two numbers of degrees are a place.
bool gpxOnEarth(std::optional<double> latitude, std::optional<double> longitude);

// A date value (days since 30/12/1899, UTC) as "2007-01-15T12:34:56Z", to the millisecond; empty
// for 0 and for what no calendar of four-digit years holds.
std::string gpxTime(double days);
// The date value of such a text, with or without fraction and zone (UTC when none is given); 0 when
// it is none.
double gpxDays(std::string_view time);

// A text as XML can carry it: UTF-8 (bytes that are not are taken as Windows-1252), blanks for
// control characters and for what XML forbids, without the blanks at both ends.
std::string gpxText(std::string_view text);

}  // namespace marlune
