#include "serial/LineSettings.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace marlune {
namespace {

std::optional<std::uint32_t> numberOf(std::string_view text, std::uint32_t least,
                                      std::uint32_t most) {
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number < least || number > most) {
        return std::nullopt;
    }
    return number;
}

std::optional<Parity> parityOf(std::string_view text) {
    if (text == "n") {
        return Parity::none;
    }
    if (text == "e") {
        return Parity::even;
    }
    if (text == "o") {
        return Parity::odd;
    }
    return std::nullopt;
}

bool applyWord(LineSettings& settings, std::string_view word) {
    constexpr std::uint32_t kFastest = 4000000;
    const std::size_t equals = word.find('=');
    if (equals == std::string_view::npos) {
        return false;
    }
    const std::string_view name = word.substr(0, equals);
    const std::string_view value = word.substr(equals + 1);
    if (name == "baud") {
        settings.baud = numberOf(value, 1, kFastest);
        return settings.baud.has_value();
    }
    if (name == "parity") {
        settings.parity = parityOf(value);
        return settings.parity.has_value();
    }
    if (name == "data") {
        settings.dataBits = numberOf(value, 5, 8);
        return settings.dataBits.has_value();
    }
    if (name == "stop") {
        settings.stopBits = numberOf(value, 1, 2);
        return settings.stopBits.has_value();
    }
    return false;
}

}  // namespace

std::optional<LineSettings> parseLineSettings(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    LineSettings settings;
    std::string_view rest = lower;
    for (;;) {
        const std::size_t first = rest.find_first_not_of(' ');
        if (first == std::string_view::npos) {
            return settings;
        }
        rest.remove_prefix(first);
        const std::string_view word = rest.substr(0, rest.find(' '));
        if (!applyWord(settings, word)) {
            return std::nullopt;
        }
        rest.remove_prefix(word.size());
    }
}

}  // namespace marlune
