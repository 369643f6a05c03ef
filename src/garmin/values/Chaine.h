// Two helpers for texts.
#pragma once

#include <string>
#include <string_view>

namespace marlune {

class Chaine {
public:
    // The text with every blank replaced; an empty replacement removes the blanks.
    static std::string Remplace(std::string_view text, std::string_view replacement);

    // The pieces of width characters, from the left, put together in reverse order: "ABCDEF" by 2
    // is "EFCDAB". The last piece may be shorter. Characters are those of Windows-1252. A width
    // below 1 gathers nothing.
    // Kept for its name: nothing here calls it.
    static std::string Inverse(std::string_view text, int width);
};

}  // namespace marlune
