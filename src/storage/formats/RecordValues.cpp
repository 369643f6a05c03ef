#include "storage/formats/RecordValues.h"

#include <charconv>
#include <cmath>

#include "garmin/values/NumberText.h"

namespace marlune {

std::optional<FilePosition> filePosition(double latitude, double longitude) {
    // The angles of receivers go a hair beyond half a turn.
    constexpr double kHair = 1e-9;
    if (std::abs(longitude) > 180 && std::abs(longitude) < 180 + kHair) {
        longitude = 180;
    }
    if (!gpxOnEarth(latitude, longitude)) {
        return std::nullopt;
    }
    return FilePosition{latitude, longitude == 180 ? -180 : longitude};
}

std::string fileNumber(double value) {
    return numberText(value, '.');
}

std::string fileNumber(float value) {
    return numberText(value, '.');
}

std::string fileNumber(std::optional<float> value) {
    return value && std::isfinite(*value) ? numberText(*value, '.') : std::string();
}

std::string fileTime(std::optional<double> time) {
    return time ? isoTime(*time) : std::string();
}

std::optional<int> fileDisplay(const WaypointRecord& waypoint) {
    if (!waypoint.display) {
        return std::nullopt;
    }
    constexpr int kCommentBits = 64;
    constexpr int kSymbolBits = 32;
    switch (*waypoint.display) {
        case kSymbolBits:
            return 1;
        case kCommentBits:
            return 2;
        default:
            return *waypoint.display;
    }
}

std::string subclassText(const RouteLinkRecord& link) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : link.subclass) {
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 15U];
    }
    return text;
}

std::optional<std::array<std::uint8_t, 18>> subclassOf(std::string_view text) {
    std::array<std::uint8_t, 18> bytes{};
    if (text.size() != 2 * bytes.size()) {
        return std::nullopt;
    }
    for (std::uint8_t& byte : bytes) {
        const char* end = text.data() + 2;
        const auto [stop, error] = std::from_chars(text.data(), end, byte, 16);
        if (error != std::errc() || stop != end) {
            return std::nullopt;
        }
        text.remove_prefix(2);
    }
    return bytes;
}

std::optional<float> metresOf(std::string_view text) {
    constexpr double kFarthest = 1e9;
    const auto value = gpxNumber(text);
    return value && std::abs(*value) <= kFarthest ? std::optional(static_cast<float>(*value))
                                                  : std::nullopt;
}

std::optional<int> wholeNumberOf(std::string_view text, int lowest, int highest) {
    const auto value = gpxNumber(text);
    if (!value || *value != std::floor(*value) || *value < lowest || *value > highest) {
        return std::nullopt;
    }
    return static_cast<int>(*value);
}

}  // namespace marlune
