// What a transfer's report means to its user: how far it succeeded, and a line that says so.
#pragma once

#include <string>

#include "marlune/Report.h"
#include "words/Speech.h"

namespace marlune::words {

enum class Success { whole, partly, none };

struct Verdict {
    Success success = Success::whole;
    std::string text;       // "12 of 39 track points received: the receiver fell silent"
    bool doubtful = false;  // whole, but damaged on its way

    [[nodiscard]] bool isWhole() const { return success == Success::whole; }
};

// linesSent: what was sent are the lines of the user's own file, so that line numbers mean his.
Verdict judge(const TransferReport& report, const Speech& say, bool linesSent = true);

}  // namespace marlune::words
