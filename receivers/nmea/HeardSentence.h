// Sentences as receivers hear them: found among any bytes, taken apart.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace marlune::receivers::nmea {

// Finds sentences: from "$" to a carriage return or line feed. Another "$" begins anew, and what
// grows longer than any sentence is dropped.
class SentenceReader {
public:
    // Takes one byte; true when it ended a sentence, which text() holds until the next byte.
    bool take(std::uint8_t byte);
    // From "$", without line ending.
    [[nodiscard]] const std::string& text() const { return text_; }

private:
    std::string text_;
    bool ended_ = true;
};

// One sentence taken apart; views into the text that it was made from.
class HeardSentence {
public:
    explicit HeardSentence(std::string_view text);

    [[nodiscard]] std::string_view text() const { return text_; }
    // "PMGNWPL"
    [[nodiscard]] std::string_view name() const { return fields_.front().substr(1); }
    // Fields from 0, which is the name with its "$"; those that are missing are empty.
    [[nodiscard]] std::string_view field(std::size_t number) const;
    [[nodiscard]] std::size_t fieldCount() const { return fields_.size(); }
    // From that field on to the "*", commas included.
    [[nodiscard]] std::string_view from(std::size_t number) const;

    // Whether it ends with "*" and the right checksum, and those two digits.
    [[nodiscard]] bool intact() const { return intact_; }
    [[nodiscard]] std::string_view digits() const { return digits_; }

private:
    std::string_view text_;
    std::string_view body_;  // up to the "*"
    std::string_view digits_;
    std::vector<std::string_view> fields_;
    bool intact_ = false;
};

}  // namespace marlune::receivers::nmea
