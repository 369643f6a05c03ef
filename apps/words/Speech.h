// The program's own words, in the language of its user. The receiver's texts and the control's
// boxes are French whatever it is.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace marlune::words {

enum class Language { english, french };

// What the environment says: LC_ALL, else LC_MESSAGES, else LANG.
Language userLanguage();

// A text in both languages. "%1" to "%9" stand for its parts. All of them are in Phrases.h.
struct Phrase {
    std::string_view english;
    std::string_view french;
};

class Speech {
public:
    explicit Speech(Language language = Language::english) : language_(language) {}

    std::string operator()(const Phrase& phrase,
                           std::initializer_list<std::string_view> parts = {}) const;

private:
    Language language_;
};

}  // namespace marlune::words
