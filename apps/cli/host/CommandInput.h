// Lines from a descriptor, taken without waiting when there are none.
#pragma once

#include "cli/Interrupt.h"
#include "cli/Output.h"
#include "cli/host/LineReader.h"

namespace marlune::cli {

class CommandInput {
public:
    explicit CommandInput(int descriptor) : descriptor_(descriptor) {}

    // The next line that has arrived by now. Reads a little at a time, so that lines which pour in
    // without end cannot hold up whoever asks.
    std::optional<InputLine> next();

    // True once all lines are taken and no other can come.
    [[nodiscard]] bool ended() const { return ended_; }

    // Waits for more input or its end, for the interrupt, or for the output's reader to go away.
    void wait(const Interrupt& interrupt, const Output& output) const;

private:
    bool read();

    int descriptor_;
    LineReader lines_;
    bool ended_ = false;
};

}  // namespace marlune::cli
