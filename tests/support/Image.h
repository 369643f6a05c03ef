// Byte images as one writes them down from a table.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace marlune {

// The bytes of a text of pieces separated by blanks: hexadecimal digits ("FF01"), a text in quotes
// ("'HOME'"), or a repeated byte ("12xFF", twelve of them).
inline std::vector<std::uint8_t> image(std::string_view text) {
    const auto hex = [&](std::size_t at) {
        return static_cast<std::uint8_t>(std::stoi(std::string(text.substr(at, 2)), nullptr, 16));
    };
    std::vector<std::uint8_t> bytes;
    while (!text.empty()) {
        if (text.front() == ' ') {
            text.remove_prefix(1);
        } else if (text.front() == '\'') {
            const std::size_t end = text.find('\'', 1);
            bytes.insert(bytes.end(), text.begin() + 1, text.begin() + std::ptrdiff_t(end));
            text.remove_prefix(end + 1);
        } else if (const std::size_t x = text.substr(0, text.find(' ')).find('x');
                   x != std::string_view::npos) {
            bytes.insert(bytes.end(), std::stoul(std::string(text.substr(0, x))), hex(x + 1));
            text.remove_prefix(x + 3);
        } else {
            bytes.push_back(hex(0));
            text.remove_prefix(2);
        }
    }
    return bytes;
}

}  // namespace marlune
