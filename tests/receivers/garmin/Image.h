// Byte images written as they stand in a table: hexadecimal bytes, 'text' for characters, and
// BYTExCOUNT for a run, all separated by blanks.
//
//   image("'ABC   ' 00 00 00 20 00x4 20x40")
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace marlune::receivers::garmin {

inline std::vector<std::uint8_t> image(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    std::size_t at = 0;
    while (at < text.size()) {
        if (text[at] == '\'') {
            const std::size_t end = text.find('\'', at + 1);
            bytes.insert(bytes.end(), text.begin() + static_cast<std::ptrdiff_t>(at + 1),
                         text.begin() + static_cast<std::ptrdiff_t>(end));
            at = end + 1;
            continue;
        }
        if (text[at] == ' ') {
            ++at;
            continue;
        }
        const auto byte = std::strtoul(std::string(text.substr(at, 2)).c_str(), nullptr, 16);
        at += 2;
        std::size_t count = 1;
        if (at < text.size() && text[at] == 'x') {
            const std::size_t end = std::min(text.find(' ', at), text.size());
            count =
                std::strtoul(std::string(text.substr(at + 1, end - at - 1)).c_str(), nullptr, 10);
            at = end;
        }
        bytes.insert(bytes.end(), count, static_cast<std::uint8_t>(byte));
    }
    return bytes;
}

}  // namespace marlune::receivers::garmin
