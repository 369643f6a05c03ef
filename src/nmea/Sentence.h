// Sentences as they travel: "$", fields between ",", "*", two checksum digits, carriage return and
// line feed.
//
// A sentence is wire text throughout this folder: Windows-1252, one character a byte, so that the
// checksum, cuts and lengths are those of the wire. It becomes UTF-8 (fromAnsi) where it is handed
// to the host, the trace or a record.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/Contains.h"

namespace marlune {

// No reader keeps more of a sentence than this; what follows is read and dropped. Real ones have
// 82 characters, so only a stream without ends meets the bound.
inline constexpr std::size_t kLongestSentence = std::size_t{2} << 20U;

// A received sentence taken apart; views into the text it was made from.
class Sentence {
public:
    explicit Sentence(std::string_view wireText);

    // Fields from 0, which is the identifier ("$GPWPL"); those that the sentence lacks are empty.
    [[nodiscard]] std::size_t fieldCount() const { return fields_.size(); }
    [[nodiscard]] std::string_view field(std::size_t number) const;

    // What follows the first "*".
    [[nodiscard]] std::string_view receivedChecksum() const { return received_; }
    // The checksum of what was received up to and including the first "*".
    [[nodiscard]] std::string computedChecksum() const;
    // Whether it has a checksum, and a wrong one.
    [[nodiscard]] bool isDamaged() const {
        return !received_.empty() && received_ != computedChecksum();
    }

private:
    std::string_view text_;
    std::string_view received_;
    std::vector<std::string_view> fields_;
};

// Wire text in capitals, accented letters too.
std::string upperCase(std::string_view wireText);

}  // namespace marlune
