// The report of one transfer, from its beginning to its end. Procedures count in it while they run
// and end it once, with why they ended; only then it is the control's last one.
#pragma once

#include <cstdint>

#include "host/Services.h"

namespace marlune {

class TransferLog {
public:
    TransferLog(Services& services, TransferKind kind, TransferDirection direction);
    // A transfer that nobody ended was left by a run-time error: a record could not be sent.
    ~TransferLog();
    TransferLog(const TransferLog&) = delete;
    TransferLog& operator=(const TransferLog&) = delete;

    TransferReport* operator->() { return &report_; }

    // True when it ended completely. pid: of the packet that came last, which only tells when the
    // transfer ended by it.
    bool end(Ending ending, std::uint16_t pid = 0);

private:
    Services& services_;
    TransferReport report_;
    bool ended_ = false;
};

// Why a loop ended that waits for a line: the host wants no more, somebody took the line away
// (`holds`), it is not there any more (`gone`), or nothing came.
Ending endingOfSilentLine(Host& host, bool holds, bool gone);

}  // namespace marlune
