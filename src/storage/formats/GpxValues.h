// The values in files of records: numbers, times and texts.
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

// Seconds since 1970-01-01 00:00:00 UTC as "2007-01-15T12:34:56Z", to the millisecond; empty
// outside the years 1900 to 9999.
std::string isoTime(double seconds);
// The same from such a text, with or without fraction and zone (UTC when none is given).
std::optional<double> isoSeconds(std::string_view time);

// A date value of the text lines (days since 30/12/1899), 0 being none, and back.
inline std::optional<double> secondsOfDays(double days) {
    constexpr double kDaysTo1970 = 25569;
    return days == 0 ? std::nullopt : std::optional((days - kDaysTo1970) * 86400.0);
}
inline double daysOfSeconds(std::optional<double> seconds) {
    constexpr double kDaysTo1970 = 25569;
    return seconds ? kDaysTo1970 + *seconds / 86400.0 : 0;
}

// A text as XML can carry it: UTF-8 (bytes that are not are taken as Windows-1252), blanks for
// control characters and for what XML forbids, without the blanks at both ends.
std::string gpxText(std::string_view text);

}  // namespace marlune
