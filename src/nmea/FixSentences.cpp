#include "nmea/FixSentences.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <string_view>

namespace marlune {
namespace {

// Digits in front of the point, padded with zeros.
std::string zeroPadded(std::int64_t value, std::size_t width) {
    std::string text = std::to_string(value);
    return text.size() < width ? text.insert(0, width - text.size(), '0') : text;
}

// A number with exactly so many decimals, whatever the program's locale.
std::string fixedText(double value, int decimals, std::size_t width) {
    const double scale = std::pow(10, decimals);
    const auto scaled = static_cast<std::int64_t>(std::llround(std::abs(value) * scale));
    const auto unit = static_cast<std::int64_t>(scale);
    const char* sign = value < 0 && scaled != 0 ? "-" : "";
    return sign + zeroPadded(scaled / unit, width) + "." +
           zeroPadded(scaled % unit, static_cast<std::size_t>(decimals));
}

// Degrees and minutes; rounding carries into the degrees.
std::string angle(double degrees, std::size_t width, char positive, char negative) {
    constexpr std::int64_t kUnits = 100'000;  // a minute
    constexpr std::int64_t kDegree = 60 * kUnits;
    const auto all = static_cast<std::int64_t>(std::llround(std::abs(degrees) * kDegree));
    return zeroPadded(all / kDegree, width) + zeroPadded(all % kDegree / kUnits, 2) + "." +
           zeroPadded(all % kUnits, 5) + "," + (degrees < 0 ? negative : positive);
}

std::string position(const FixRecord& fix) {
    return angle(fix.latitude, 2, 'N', 'S') + "," + angle(fix.longitude, 3, 'E', 'W');
}

struct Moment {
    std::string time;  // hhmmss.ss
    std::string date;  // ddmmyy
};

Moment momentOf(const FixRecord& fix) {
    constexpr double kLargest = 1e11;
    if (!fix.time || !(std::abs(*fix.time) < kLargest)) {
        return {};
    }
    using Hundredths = std::chrono::duration<std::int64_t, std::centi>;
    const std::chrono::sys_time<Hundredths> at(
        Hundredths(static_cast<std::int64_t>(std::llround(*fix.time * 100))));
    const auto day = std::chrono::floor<std::chrono::days>(at);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(at - day);
    const int year = static_cast<int>(date.year()) % 100;
    return {zeroPadded(clock.hours().count(), 2) + zeroPadded(clock.minutes().count(), 2) +
                zeroPadded(clock.seconds().count(), 2) + "." +
                zeroPadded(clock.subseconds().count(), 2),
            zeroPadded(static_cast<unsigned>(date.day()), 2) +
                zeroPadded(static_cast<unsigned>(date.month()), 2) +
                zeroPadded(year < 0 ? 0 : year, 2)};
}

bool isFix(const FixRecord& fix) {
    return fix.quality.value_or(2) >= 2;
}

bool isDifferential(const FixRecord& fix) {
    return fix.quality.value_or(2) >= 4;
}

// Speed and course over ground, two fields.
std::string motion(const FixRecord& fix) {
    if (!fix.eastSpeed || !fix.northSpeed) {
        return ",";
    }
    constexpr double kKnotsPerMetreASecond = 3600.0 / 1852.0;
    const double speed = std::hypot(*fix.eastSpeed, *fix.northSpeed);
    double course = std::atan2(*fix.eastSpeed, *fix.northSpeed) * 180 / std::numbers::pi;
    course = std::round((course < 0 ? course + 360 : course) * 10) / 10;
    return fixedText(speed * kKnotsPerMetreASecond, 1, 1) + "," +
           fixedText(course >= 360 ? 0 : course, 1, 3);
}

std::string sentence(const std::string& content) {
    unsigned sum = 0;
    for (const char c : content) {
        sum ^= static_cast<unsigned char>(c);
    }
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    return "$" + content + "*" + kDigits[sum / 16] + kDigits[sum % 16] + "\r\n";
}

}  // namespace

std::string ggaSentence(const FixRecord& fix) {
    const char* quality = !isFix(fix) ? "0" : isDifferential(fix) ? "2" : "1";
    const std::string altitude = fix.altitude ? fixedText(*fix.altitude, 1, 1) : std::string();
    return sentence("GPGGA," + momentOf(fix).time + "," + position(fix) + "," + quality + ",,," +
                    altitude + ",M,,M,,");
}

std::string rmcSentence(const FixRecord& fix) {
    const Moment moment = momentOf(fix);
    const char* mode = !isFix(fix) ? "N" : isDifferential(fix) ? "D" : "A";
    return sentence("GPRMC," + moment.time + "," + (isFix(fix) ? "A" : "V") + "," + position(fix) +
                    "," + motion(fix) + "," + moment.date + ",,," + mode);
}

}  // namespace marlune
