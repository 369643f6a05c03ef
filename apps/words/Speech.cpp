#include "words/Speech.h"

#include <cstdlib>

namespace marlune::words {

Language userLanguage() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const value = std::getenv(name);
        if (value != nullptr && *value != '\0') {
            return std::string_view(value).starts_with("fr") ? Language::french : Language::english;
        }
    }
    return Language::english;
}

std::string Speech::operator()(const Phrase& phrase,
                               std::initializer_list<std::string_view> parts) const {
    const std::string_view text = language_ == Language::french ? phrase.french : phrase.english;
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool place = text[i] == '%' && i + 1 < text.size() && text[i + 1] >= '1' &&
                           text[i + 1] <= '9' &&
                           static_cast<std::size_t>(text[i + 1] - '1') < parts.size();
        if (place) {
            out += parts.begin()[text[++i] - '1'];
        } else {
            out += text[i];
        }
    }
    return out;
}

}  // namespace marlune::words
