#include "base/DateText.h"

#include <chrono>
#include <cmath>
#include <cstdio>

namespace marlune {

std::string formatDate(double date) {
    using namespace std::chrono;
    constexpr double kSecondsPerDay = 86400.0;
    // Beyond these days the calendar has no four-digit year.
    constexpr double kFirstDay = -657434.0;
    constexpr double kLastDay = 2958466.0;
    if (!(date >= kFirstDay && date < kLastDay)) {
        return "00/00/0000 00:00:00";
    }
    const seconds total{std::llround(date * kSecondsPerDay)};
    const auto dayPart = floor<days>(total);
    const sys_days day = sys_days{1899y / December / 30} + dayPart;
    const year_month_day calendar{day};
    const hh_mm_ss time{total - dayPart};
    char text[64];
    (void)std::snprintf(
        text, sizeof text, "%02u/%02u/%04d %02d:%02d:%02d", static_cast<unsigned>(calendar.day()),
        static_cast<unsigned>(calendar.month()), static_cast<int>(calendar.year()),
        static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
        static_cast<int>(time.seconds().count()));
    return text;
}

}  // namespace marlune
