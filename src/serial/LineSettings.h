// The settings text of a line, as in "baud=9600 parity=n data=8 stop=1".
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace marlune {

enum class Parity { none, even, odd };

// What the text does not name stays as the line has it.
struct LineSettings {
    std::optional<std::uint32_t> baud;
    std::optional<Parity> parity;  // n, e, o
    std::optional<int> dataBits;   // 5 to 8
    std::optional<int> stopBits;   // 1 or 2
};

// Nothing when a word of the text is no setting or has a value that no line can have. Letters may
// be of either case.
std::optional<LineSettings> parseLineSettings(std::string_view text);

}  // namespace marlune
