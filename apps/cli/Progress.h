// One line on a terminal that tells how far a transfer is. It stands there only between the texts
// that others print: they take it away first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "cli/Output.h"

namespace marlune::cli {

class Progress {
public:
    // Shows nothing when the output is no terminal.
    explicit Progress(Output& output);

    // A transfer begins, of so many records as far as its receiver tells.
    void begin(std::int16_t records);
    // So many records have come.
    void advance(std::size_t done);
    void end();
    // Takes the line away, so that something else can be printed there.
    void clear();

private:
    Output& output_;
    bool terminal_;
    bool running_ = false;
    bool shown_ = false;
    std::int16_t records_ = 0;
};

}  // namespace marlune::cli
