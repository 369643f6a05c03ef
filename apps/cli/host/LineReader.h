// Cuts a stream of bytes into lines, however the bytes arrive. No line costs more memory than the
// longest one allowed: what is longer is reported as such and skipped to its end.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace marlune::cli {

struct InputLine {
    std::string text;      // without its line end
    bool tooLong = false;  // then the text is empty
};

class LineReader {
public:
    static constexpr std::size_t kLongest = 1U << 20U;

    explicit LineReader(std::size_t longest = kLongest) : longest_(longest) {}

    void feed(std::string_view bytes);
    // The input has ended: what is left is its last line.
    void finish();

    std::optional<InputLine> next();

private:
    void append(std::string_view piece);
    void endLine();

    std::size_t longest_;
    std::string partial_;
    bool tooLong_ = false;
    std::deque<InputLine> lines_;
};

}  // namespace marlune::cli
