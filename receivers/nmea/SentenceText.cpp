#include "receivers/nmea/SentenceText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <numeric>

#include "base/CodePage.h"

namespace marlune::receivers::nmea {
namespace {

constexpr std::chrono::sys_days kDayZero = std::chrono::year(1899) / std::chrono::December / 30;

struct Moment {
    std::chrono::sys_days day;
    std::int64_t hundredths;  // of a second since midnight
};

Moment momentOf(double date) {
    constexpr double kLastDay = 2958465;  // 31/12/9999
    constexpr std::int64_t kHundredthsADay = 8640000;
    const std::int64_t all = std::llround(std::clamp(date, 0.0, kLastDay) * kHundredthsADay);
    return {kDayZero + std::chrono::days(all / kHundredthsADay), all % kHundredthsADay};
}

// Degrees and minutes, the minutes rounded and carried.
std::string degreesText(double degrees, int digits, int decimals) {
    const std::int64_t unit = std::llround(std::pow(10, decimals));
    const std::int64_t all = std::llround(std::abs(degrees) * 60 * static_cast<double>(unit));
    const std::int64_t minutes = all / unit;
    return padded(minutes / 60, digits) + padded(minutes % 60, 2) + '.' +
           padded(all % unit, decimals);
}

std::optional<double> readDegrees(std::string_view field, std::size_t digits, double most) {
    if (field.size() < digits + 2) {
        return std::nullopt;
    }
    const std::optional<int> degrees = readWhole(field.substr(0, digits));
    const std::optional<double> minutes = readNumber(field.substr(digits));
    // Hosts that round without carrying write a whole degree as 60 minutes.
    if (!degrees || !minutes || *minutes < 0 || *minutes > 60) {
        return std::nullopt;
    }
    const double all = *degrees + *minutes / 60;
    return all <= most ? std::optional(all) : std::nullopt;
}

std::optional<double> withHemisphere(std::optional<double> degrees, std::string_view hemisphere,
                                     std::string_view positive, std::string_view negative) {
    if (!degrees || (hemisphere != positive && hemisphere != negative)) {
        return std::nullopt;
    }
    return hemisphere == positive ? *degrees : -*degrees;
}

std::optional<int> twoDigits(std::string_view text, std::size_t at) {
    return at + 2 <= text.size() ? readWhole(text.substr(at, 2)) : std::nullopt;
}

template <typename Number>
std::optional<Number> readWith(std::string_view field, bool (*allowed)(char)) {
    Number number{};
    const char* const end = field.data() + field.size();
    if (!std::all_of(field.begin(), field.end(), allowed)) {
        return std::nullopt;
    }
    const auto [stop, error] = std::from_chars(field.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

std::uint8_t checksum(std::string_view text) {
    return std::accumulate(text.begin(), text.end(), std::uint8_t{0}, [](std::uint8_t sum, char c) {
        return static_cast<std::uint8_t>(sum ^ static_cast<std::uint8_t>(c));
    });
}

std::string sentence(std::string_view body) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const std::uint8_t sum = checksum(body);
    std::string text = "$";
    text += body;
    text += {'*', kDigits[sum >> 4U], kDigits[sum & 0xFU], '\r', '\n'};
    return text;
}

std::string_view labelOf(std::string_view sentence) {
    for (const std::string_view maker : {"$PMGNCMD,", "$PMLR,"}) {
        if (sentence.starts_with(maker)) {
            sentence.remove_prefix(maker.size() - 1);
        }
    }
    sentence.remove_prefix(std::min<std::size_t>(1, sentence.size()));
    return sentence.substr(0, sentence.find_first_of(",*\r"));
}

std::string coordinates(double latitude, double longitude, int decimals) {
    const double north = std::clamp(latitude, -90.0, 90.0);
    return degreesText(north, 2, decimals) + (north < 0 ? ",S," : ",N,") +
           degreesText(longitude, 3, decimals) + (longitude < 0 ? ",W" : ",E");
}

std::optional<double> readLatitude(std::string_view field, std::string_view hemisphere) {
    return withHemisphere(readDegrees(field, 2, 90), hemisphere, "N", "S");
}

std::optional<double> readLongitude(std::string_view field, std::string_view hemisphere) {
    return withHemisphere(readDegrees(field, 3, 180), hemisphere, "E", "W");
}

std::optional<double> readNumber(std::string_view field) {
    return readWith<double>(field, [](char c) { return isDigit(c) || c == '.' || c == '-'; });
}

std::optional<int> readWhole(std::string_view field) {
    return readWith<int>(field, isDigit);
}

std::optional<double> readAltitude(std::string_view field, std::string_view unit) {
    constexpr double kFoot = 0.3048;
    constexpr double kHighest = 100000;
    const std::optional<double> altitude = readNumber(field);
    if (!altitude || std::abs(*altitude) > kHighest) {
        return std::nullopt;
    }
    return unit == "F" ? *altitude * kFoot : *altitude;
}

std::string timeText(double date) {
    const std::int64_t hundredths = momentOf(date).hundredths;
    const std::int64_t seconds = hundredths / 100;
    return padded(seconds / 3600, 2) + padded(seconds / 60 % 60, 2) + padded(seconds % 60, 2) +
           '.' + padded(hundredths % 100, 2);
}

std::string dayText(double date) {
    const std::chrono::year_month_day day(momentOf(date).day);
    return padded(static_cast<unsigned>(day.day()), 2) +
           padded(static_cast<unsigned>(day.month()), 2) +
           padded(static_cast<int>(day.year()) % 100, 2);
}

std::optional<double> readTime(std::string_view hhmmss) {
    const int hours = twoDigits(hhmmss, 0).value_or(-1);
    const int minutes = twoDigits(hhmmss, 2).value_or(-1);
    const double seconds =
        readNumber(hhmmss.substr(std::min<std::size_t>(4, hhmmss.size()))).value_or(-1);
    if (hours < 0 || hours > 23 || minutes < 0 || minutes > 59 || seconds < 0 || seconds >= 60) {
        return std::nullopt;
    }
    return (hours * 3600 + minutes * 60 + seconds) / kSecondsADay;
}

std::optional<double> readDay(std::string_view ddmmyy) {
    const std::optional<int> day = twoDigits(ddmmyy, 0);
    const std::optional<int> month = twoDigits(ddmmyy, 2);
    const std::optional<int> year = twoDigits(ddmmyy, 4);
    if (!day || !month || !year || ddmmyy.size() != 6) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date{std::chrono::year(2000 + *year),
                                           std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
    if (!date.ok()) {
        return std::nullopt;
    }
    return static_cast<double>((std::chrono::sys_days(date) - kDayZero).count());
}

std::string wireText(std::string_view utf8) {
    std::string text = toAnsi(utf8);
    std::replace_if(
        text.begin(), text.end(),
        [](char c) {
            constexpr std::string_view kReserved = "$*,";
            return static_cast<std::uint8_t>(c) < ' ' ||
                   kReserved.find(c) != std::string_view::npos;
        },
        ' ');
    return text;
}

std::string heldText(std::string_view wire) {
    std::string text(wire);
    std::replace_if(
        text.begin(), text.end(),
        [](char c) { return static_cast<std::uint8_t>(c) < ' ' || c == ';'; }, ' ');
    return fromAnsi(trimBlanks(text));
}

std::string padded(std::int64_t number, int digits) {
    std::string text = std::to_string(std::abs(number));
    const auto width = static_cast<std::size_t>(std::max(digits, 0));
    text.insert(0, width - std::min(width, text.size()), '0');
    if (number < 0) {
        text.insert(text.begin(), '-');
    }
    return text;
}

}  // namespace marlune::receivers::nmea
