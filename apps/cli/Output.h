// A stream of text to a descriptor, written whole and at once. Whoever reads it may be slow or go
// away: the writer never dies of it, and never waits for a slow reader once the program is to end.
#pragma once

#include <string>
#include <string_view>

#include "cli/Interrupt.h"

namespace marlune::cli {

class Output {
public:
    Output(int descriptor, const Interrupt& interrupt);

    // Does nothing once the reader has gone.
    void write(std::string_view text);

    // The same for a text that came from outside: a terminal gets no control characters of it.
    void writeForeign(std::string_view text);

    [[nodiscard]] bool isTerminal() const { return terminal_; }

    // True once a text could not be written to its end.
    [[nodiscard]] bool broken() const { return broken_; }
    // The system's error when that was not the reader's going away, a full disk for one; else 0.
    [[nodiscard]] int error() const { return error_; }
    // Looks whether the reader has gone, without writing.
    void checkReader();

    [[nodiscard]] int descriptor() const { return descriptor_; }

private:
    bool waitForRoom();

    int descriptor_;
    bool terminal_;
    const Interrupt& interrupt_;
    bool broken_ = false;
    int error_ = 0;
};

// A text with its control characters, of UTF-8's both ranges, as "^[" or "?"; but for line ends.
std::string visible(std::string_view text);

}  // namespace marlune::cli
