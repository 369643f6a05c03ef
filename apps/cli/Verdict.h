// What a transfer's report means to whoever ran the command: a line and an exit status.
#pragma once

#include <string>

#include "cli/Options.h"
#include "cli/Speech.h"
#include "marlune/Report.h"

namespace marlune::cli {

struct Verdict {
    ExitStatus status = kDone;
    std::string text;       // "12 of 39 track points received: the receiver fell silent"
    bool doubtful = false;  // whole, but damaged on its way

    [[nodiscard]] bool isWhole() const { return status == kDone; }
};

// linesSent: what was sent are the lines of the user's own file, so that line numbers mean his.
Verdict judge(const TransferReport& report, const Speech& say, bool linesSent = true);

}  // namespace marlune::cli
