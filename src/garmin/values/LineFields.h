// Texts taken apart at a separator.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "base/RunTimeError.h"

namespace marlune {

// All pieces of the text, as views into it: one more than it has separators.
inline std::vector<std::string_view> splitText(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    pieces.reserve(12);
    for (;;) {
        const std::size_t end = text.find(separator);
        pieces.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return pieces;
        }
        text.remove_prefix(end + 1);
    }
}

// The first count fields; views into the line. Raises the index error when the line has fewer. What
// follows them is left alone.
template <std::size_t count>
std::array<std::string_view, count> lineFields(std::string_view line, char separator = ';') {
    std::array<std::string_view, count> fields;
    for (std::size_t i = 0;; ++i) {
        const std::size_t end = std::min(line.find(separator), line.size());
        fields[i] = line.substr(0, end);
        if (i + 1 == count) {
            return fields;
        }
        if (end == line.size()) {
            throw RunTimeError(RunTimeError::index);
        }
        line.remove_prefix(end + 1);
    }
}

}  // namespace marlune
