// Dates of Garmin records. A date value counts days since 30/12/1899 00:00:00 as a double, the
// fraction being the time of day.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace marlune {

class jour {
public:
    // 31/12/1989 00:00:00, where Garmin's seconds begin, and 06/01/1980 00:00:00, where GPS time
    // begins.
    static constexpr double kGarminEpoch = 32873;
    static constexpr double kGpsEpoch = 29226;

    static double GarminTimeToDate(std::int32_t seconds);

    // The nearest second, halves to the even one. 0 for a date that 32 bits of seconds do not
    // reach.
    static std::int32_t DateToGarminTime(double date);

    static double GpsTimeToDate(std::int32_t seconds);

    // A text of five words, "Mon Jan 15 12:34:56 2007", any case, months in English; two-digit
    // years are those from 1930 to 2029. Day 0, which stands for a missing date, counts as
    // 01/01/2000. Raises a type mismatch when it is no date and the index error when words are
    // missing. Kept for its name: nothing here calls it.
    static double ParseDateText(std::string_view text);

    // An 8-byte record: month, day, year (2 bytes), hour (2 bytes), minute, second. Raises a type
    // mismatch when they are no date and the index error when bytes are missing.
    static double GarminDateToDate(std::span<const std::uint8_t> record);
};

}  // namespace marlune
