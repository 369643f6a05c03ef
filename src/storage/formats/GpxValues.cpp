#include "storage/formats/GpxValues.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>

#include "base/CodePage.h"

namespace marlune {
namespace {

using Days = std::chrono::sys_days;
using std::chrono::day;
using std::chrono::month;
using std::chrono::year;
using std::chrono::year_month_day;

// Reads the numbers of a time text one after the other; once a piece is missing it stays failed.
class TimeReader {
public:
    explicit TimeReader(std::string_view text) : text_(text) {}

    int digits(std::size_t count) {
        int value = 0;
        for (std::size_t i = 0; i < count; ++i) {
            if (!good_ || text_.empty() || text_.front() < '0' || text_.front() > '9') {
                good_ = false;
                return 0;
            }
            value = value * 10 + (text_.front() - '0');
            text_.remove_prefix(1);
        }
        return value;
    }

    bool skip(char c) {
        const bool found = good_ && !text_.empty() && text_.front() == c;
        if (found) {
            text_.remove_prefix(1);
        }
        return found;
    }

    void expect(char c) { good_ = skip(c) && good_; }

    double fraction() {
        double value = 0;
        double unit = 0.1;
        while (!text_.empty() && text_.front() >= '0' && text_.front() <= '9') {
            value += unit * (text_.front() - '0');
            unit /= 10;
            text_.remove_prefix(1);
        }
        return value;
    }

    [[nodiscard]] bool good() const { return good_; }
    [[nodiscard]] bool atEnd() const { return text_.empty(); }

private:
    std::string_view text_;
    bool good_ = true;
};

// "Z", "+02:00", "-0530" or nothing: minutes ahead of UTC.
int readZone(TimeReader& in) {
    if (in.skip('Z') || in.atEnd()) {
        return 0;
    }
    const bool behind = in.skip('-');
    if (!behind) {
        in.expect('+');
    }
    const int hours = in.digits(2);
    in.skip(':');
    const int minutes = hours * 60 + in.digits(2);
    return behind ? -minutes : minutes;
}

// Whether the bytes of a well-formed UTF-8 text at this place start U+FFFE or U+FFFF.
bool isNoncharacter(std::string_view rest) {
    return rest.starts_with("\xEF\xBF\xBE") || rest.starts_with("\xEF\xBF\xBF");
}

}  // namespace

std::optional<double> gpxNumber(std::string_view text) {
    std::string digits(trimBlanks(text));
    if (const auto comma = digits.find(','); comma != std::string::npos) {
        digits[comma] = '.';
    }
    if (digits.starts_with('+')) {
        digits.erase(0, 1);
    }
    double value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc() || stop != end || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

bool gpxOnEarth(std::optional<double> latitude, std::optional<double> longitude) {
    return latitude && longitude && std::abs(*latitude) <= 90 && std::abs(*longitude) <= 180;
}

std::string isoTime(double seconds) {
    constexpr std::int64_t kBegin = -2'208'988'800'000;  // 01/01/1900
    constexpr std::int64_t kEnd = 253'402'300'800'000;   // 01/01/10000
    const double milliseconds = std::round(seconds * 1000);
    if (!(milliseconds >= kBegin && milliseconds < kEnd)) {
        return {};
    }
    const std::chrono::sys_time<std::chrono::milliseconds> moment(
        std::chrono::milliseconds(static_cast<std::int64_t>(milliseconds)));
    const auto day = std::chrono::floor<std::chrono::days>(moment);
    const year_month_day date(day);
    const std::chrono::hh_mm_ss time(moment - day);
    const auto number = [](auto value, std::size_t width) {
        std::string text = std::to_string(value);
        return text.insert(0, width - std::min(width, text.size()), '0');
    };
    std::string text = number(static_cast<int>(date.year()), 4) + "-" +
                       number(static_cast<unsigned>(date.month()), 2) + "-" +
                       number(static_cast<unsigned>(date.day()), 2) + "T" +
                       number(time.hours().count(), 2) + ":" + number(time.minutes().count(), 2) +
                       ":" + number(time.seconds().count(), 2);
    if (time.subseconds().count() != 0) {
        text += "." + number(time.subseconds().count(), 3);
    }
    return text + "Z";
}

std::optional<double> isoSeconds(std::string_view time) {
    TimeReader in(trimBlanks(time));
    const year y{in.digits(4)};
    in.expect('-');
    const month m{static_cast<unsigned>(in.digits(2))};
    in.expect('-');
    const day d{static_cast<unsigned>(in.digits(2))};
    in.expect('T');
    const int hours = in.digits(2);
    in.expect(':');
    const int minutes = in.digits(2);
    in.expect(':');
    const double seconds = in.digits(2) + (in.skip('.') ? in.fraction() : 0);
    const int zone = readZone(in);
    const year_month_day date(y, m, d);
    // Midnight may be written 24:00:00, and a leap second is second 60.
    if (!in.good() || !in.atEnd() || !date.ok() || hours > 24 || minutes > 59 || seconds >= 61) {
        return std::nullopt;
    }
    const auto days = Days(date).time_since_epoch().count();
    return static_cast<double>(days) * 86400.0 + (hours * 60 + minutes - zone) * 60 + seconds;
}

std::string gpxText(std::string_view text) {
    std::string clean = isUtf8(text) ? std::string(text) : fromAnsi(text);
    for (std::size_t i = 0; i < clean.size(); ++i) {
        const auto byte = static_cast<std::uint8_t>(clean[i]);
        if (byte < 0x20 || byte == 0x7F) {
            clean[i] = ' ';
        } else if (isNoncharacter(std::string_view(clean).substr(i))) {
            clean.replace(i, 3, " ");
        }
    }
    return std::string(trimBlanks(clean));
}

}  // namespace marlune
