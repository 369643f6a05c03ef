#include "garmin/values/jour.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <string>

#include "base/CodePage.h"
#include "garmin/values/ByteAccess.h"
#include "garmin/values/LineFields.h"
#include "garmin/values/NumberText.h"

namespace marlune {
namespace {

constexpr double kSecondsPerDay = 86400;

struct Calendar {
    int day = 0;
    int month = 0;
    int year = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

double dateValue(const Calendar& c) {
    using namespace std::chrono;
    const int century = c.year >= 100 ? 0 : c.year < 30 ? 2000 : 1900;
    const year_month_day day{year{century + c.year}, month{static_cast<unsigned>(c.month)},
                             std::chrono::day{static_cast<unsigned>(c.day)}};
    const bool time = c.hour < 24 && c.minute < 60 && c.second < 60;
    if (!day.ok() || !time || c.year > 9999) {
        throw RunTimeError(RunTimeError::typeMismatch);
    }
    const auto days = sys_days{day} - sys_days{1899y / December / 30};
    const int seconds = (c.hour * 60 + c.minute) * 60 + c.second;
    return static_cast<double>(days.count()) + seconds / kSecondsPerDay;
}

// One to four digits and nothing else.
int wholeNumber(std::string_view text) {
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc{} || result.ptr != text.data() + text.size() || text.size() > 4 ||
        value < 0) {
        throw RunTimeError(RunTimeError::typeMismatch);
    }
    return value;
}

// 1 to 12 for "jan" to "dec".
int monthNumber(std::string_view name) {
    constexpr std::array<std::string_view, 12> kNames = {"jan", "feb", "mar", "apr", "may", "jun",
                                                         "jul", "aug", "sep", "oct", "nov", "dec"};
    const auto* const found = std::find(kNames.begin(), kNames.end(), name);
    if (found == kNames.end()) {
        throw RunTimeError(RunTimeError::typeMismatch);
    }
    return static_cast<int>(found - kNames.begin()) + 1;
}

}  // namespace

double jour::GarminTimeToDate(std::int32_t seconds) {
    return kGarminEpoch + seconds / kSecondsPerDay;
}

std::int32_t jour::DateToGarminTime(double date) {
    try {
        return roundTo<std::int32_t>((date - kGarminEpoch) * kSecondsPerDay);
    } catch (const RunTimeError&) {
        return 0;
    }
}

double jour::GpsTimeToDate(std::int32_t seconds) {
    return kGpsEpoch + seconds / kSecondsPerDay;
}

double jour::ParseDateText(std::string_view text) {
    constexpr double kNewYear2000 = 36526;
    std::string lower(trimBlanks(text));
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    const auto words = lineFields<5>(lower, ' ');
    const auto time = lineFields<3>(words[3], ':');
    const double date =
        dateValue({wholeNumber(words[2]), monthNumber(words[1]), wholeNumber(words[4]),
                   wholeNumber(time[0]), wholeNumber(time[1]), wholeNumber(time[2])});
    return std::trunc(date) == 0 ? date + kNewYear2000 : date;
}

double jour::GarminDateToDate(std::span<const std::uint8_t> record) {
    const Bytes r = bytesAt(record, 0, 8);
    return dateValue({r[1], r[0], r[2] + 256 * r[3], r[4] + 256 * r[5], r[6], r[7]});
}

}  // namespace marlune
