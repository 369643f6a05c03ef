#include "cli/PortChoice.h"

#include <charconv>
#include <optional>
#include <stdexcept>

namespace marlune::cli {
namespace {

std::optional<std::int16_t> wholeNumber(std::string_view text) {
    std::int16_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return number;
}

bool isDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

PortChoice PortChoice::parse(std::string_view text) {
    constexpr std::string_view kVirtual = "virtual";
    if (text.empty()) {
        throw std::invalid_argument(
            R"(a port is a COM number, a device path, "virtual" or "auto")");
    }
    if (text == "auto") {
        return {Kind::automatic, 0, {}};
    }
    if (text == kVirtual) {
        return {Kind::builtIn, 0, {}};
    }
    if (text.starts_with("virtual:")) {
        return {Kind::builtIn, 0, std::string(text.substr(kVirtual.size() + 1))};
    }
    if (isDigits(text)) {
        const auto number = wholeNumber(text);
        if (!number) {
            throw std::invalid_argument("no COM port has the number " + std::string(text));
        }
        return {Kind::number, *number, {}};
    }
    return {Kind::device, 0, std::string(text)};
}

PortDevice PortDevice::parse(std::string_view text) {
    const std::size_t equals = text.find('=');
    const auto number =
        equals == std::string_view::npos ? std::nullopt : wholeNumber(text.substr(0, equals));
    if (!number || equals + 1 == text.size()) {
        throw std::invalid_argument("\"" + std::string(text) +
                                    R"(" is not a COM number, "=" and a device path)");
    }
    return {*number, std::string(text.substr(equals + 1))};
}

}  // namespace marlune::cli
