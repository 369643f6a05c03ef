#include "garmin/values/Chaine.h"

#include "base/CodePage.h"

namespace marlune {

std::string Chaine::Remplace(std::string_view text, std::string_view replacement) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        if (c == ' ') {
            out += replacement;
        } else {
            out += c;
        }
    }
    return out;
}

std::string Chaine::Inverse(std::string_view text, int width) {
    if (width < 1) {
        return {};
    }
    const std::string characters = toAnsi(text);
    const auto piece = static_cast<std::size_t>(width);
    std::string out;
    out.reserve(characters.size());
    // From the last piece, which is the shorter one, to the first.
    for (std::size_t end = characters.size(); end > 0;) {
        const std::size_t begin = (end - 1) / piece * piece;
        out += characters.substr(begin, end - begin);
        end = begin;
    }
    return fromAnsi(out);
}

}  // namespace marlune
