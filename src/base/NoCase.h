// Comparison of names without regard to the case of the letters A to Z.
#pragma once

#include <algorithm>
#include <string_view>

namespace marlune {

inline bool equalsNoCase(std::string_view left, std::string_view right) {
    const auto lower = [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [&](char a, char b) { return lower(a) == lower(b); });
}

}  // namespace marlune
