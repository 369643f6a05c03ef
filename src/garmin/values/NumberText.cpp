#include "garmin/values/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace marlune {
namespace {

template <class Real>
void appendShortest(std::string& text, Real value, char decimalSeparator) {
    if (!std::isfinite(value) || value == Real{0}) {
        text += '0';
        return;
    }
    // The longest: the sign, "0.", 307 zeros and 17 digits.
    std::array<char, 352> number;
    char* const begin = number.data();
    char* const end =
        std::to_chars(begin, begin + number.size(), value, std::chars_format::fixed).ptr;
    std::replace(begin, end, '.', decimalSeparator);
    text.append(begin, end);
}

// A table, because every record is rounded several times and std::pow is slow.
constexpr std::array<double, 16> kScales = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                            1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

int tableIndex(int decimals) {
    return std::clamp(decimals, 0, 15);
}

double scaleOf(int decimals) {
    return kScales[static_cast<std::size_t>(tableIndex(decimals))];
}

// Appends scaled / 10^decimals, a whole number of at most 15 digits, without trailing zeros.
void appendDecimal(std::string& text, std::int64_t scaled, int decimals, char decimalSeparator) {
    std::array<char, 20> number;
    char* const end = number.data() + number.size();
    char* at = end;
    std::int64_t rest = std::abs(scaled);
    const auto putDigit = [&] {
        *--at = static_cast<char>('0' + rest % 10);
        rest /= 10;
    };
    for (; decimals > 0 && rest % 10 == 0; --decimals) {
        rest /= 10;
    }
    if (decimals > 0) {
        for (; decimals > 0; --decimals) {
            putDigit();
        }
        *--at = decimalSeparator;
    }
    do {
        putDigit();
    } while (rest != 0);
    if (scaled < 0) {
        *--at = '-';
    }
    text.append(at, end);
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// What from_chars cannot tell apart: a number beyond the largest double, or below the smallest.
// The place of the first digit that counts decides together with the exponent, since each of them
// alone may be offset by the other.
double outOfRange(std::string_view mantissa, std::string_view exponent) {
    constexpr std::int64_t kFar = std::numeric_limits<std::int64_t>::max() / 4;
    const bool negative = exponent.starts_with('-');
    exponent.remove_prefix(exponent.starts_with('+') ? 1 : 0);
    std::int64_t power = 0;
    const auto read = std::from_chars(exponent.data(), exponent.data() + exponent.size(), power);
    if (read.ec == std::errc::result_out_of_range) {
        power = negative ? -kFar : kFar;
    }
    const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
    const auto leading = static_cast<std::int64_t>(mantissa.find_first_not_of("0."));
    return point - leading + std::clamp(power, -kFar, kFar) > 0 ? HUGE_VAL : 0.0;
}

// An unsigned number that is known to be well formed, its exponent (without "e") also apart.
double valueOf(std::string_view number, std::string_view exponent) {
    double value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        const std::size_t tail = exponent.empty() ? 0 : exponent.size() + 1;
        return outOfRange(number.substr(0, number.size() - tail), exponent);
    }
    return value;
}

std::size_t skipDigits(std::string_view text, std::size_t at) {
    while (at < text.size() && isDigit(text[at])) {
        ++at;
    }
    return at;
}

bool isSign(std::string_view text, std::size_t at) {
    return at < text.size() && (text[at] == '-' || text[at] == '+');
}

}  // namespace

std::string numberText(double value, char decimalSeparator) {
    std::string text;
    appendShortest(text, value, decimalSeparator);
    return text;
}

std::string numberText(float value, char decimalSeparator) {
    std::string text;
    appendShortest(text, value, decimalSeparator);
    return text;
}

void appendNumber(std::string& text, double value, char decimalSeparator) {
    appendShortest(text, value, decimalSeparator);
}

void appendNumber(std::string& text, float value, char decimalSeparator) {
    appendShortest(text, value, decimalSeparator);
}

void appendRounded(std::string& text, double value, int decimals, char decimalSeparator) {
    // Numbers of so many digits are all different as doubles: the digits are the shortest text.
    constexpr double kExact = 1e15;
    const double scaled = std::nearbyint(value * scaleOf(decimals));
    if (std::abs(scaled) < kExact) {
        appendDecimal(text, static_cast<std::int64_t>(scaled), tableIndex(decimals),
                      decimalSeparator);
    } else {
        appendShortest(text, roundHalfEven(value, decimals), decimalSeparator);
    }
}

double roundHalfEven(double value, int decimals) {
    // From here on a double has no fraction.
    constexpr double kWholeFrom = 9007199254740992.0;
    const double scale = scaleOf(decimals);
    const double scaled = value * scale;
    if (!(std::abs(scaled) < kWholeFrom)) {
        return value;
    }
    return std::nearbyint(scaled) / scale;
}

LeadingNumber leadingNumber(std::string_view text) {
    const std::size_t signAt = std::min(text.find_first_not_of(" \t"), text.size());
    const std::size_t begin = signAt + (isSign(text, signAt) ? 1U : 0U);
    std::size_t end = skipDigits(text, begin);
    std::size_t digits = end - begin;
    if (end < text.size() && text[end] == '.') {
        const std::size_t fractionEnd = skipDigits(text, end + 1);
        digits += fractionEnd - end - 1;
        end = fractionEnd;
    }
    if (digits == 0) {
        return {};
    }
    std::string_view exponent;
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        const std::size_t exponentDigits = end + 1 + (isSign(text, end + 1) ? 1U : 0U);
        const std::size_t exponentEnd = skipDigits(text, exponentDigits);
        if (exponentEnd > exponentDigits) {
            exponent = text.substr(end + 1, exponentEnd - end - 1);
            end = exponentEnd;
        }
    }
    const double value = valueOf(text.substr(begin, end - begin), exponent);
    return {begin > signAt && text[signAt] == '-' ? -value : value, end};
}

double readNumber(std::string_view text) {
    return leadingNumber(text).value;
}

float toSingle(double value) {
    if (!(std::abs(value) <= static_cast<double>(std::numeric_limits<float>::max()))) {
        throw RunTimeError(RunTimeError::overflow);
    }
    return static_cast<float>(value);
}

}  // namespace marlune
