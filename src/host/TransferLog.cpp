#include "host/TransferLog.h"

#include <utility>

namespace marlune {

TransferLog::TransferLog(Services& services, TransferKind kind, TransferDirection direction)
    : services_(services) {
    ++services_.reports.transfersBegun;
    report_.kind = kind;
    report_.direction = direction;
}

TransferLog::~TransferLog() {
    if (!ended_) {
        end(Ending::unsendable);
    }
}

bool TransferLog::end(Ending ending, std::uint16_t pid) {
    ended_ = true;
    report_.ending = ending;
    const bool isTheReason = ending == Ending::protocolError || ending == Ending::refused;
    report_.pid = isTheReason ? pid : std::uint16_t{0};
    services_.reports.transfer = std::move(report_);
    return ending == Ending::complete;
}

Ending endingOfSilentLine(Host& host, bool holds, bool gone) {
    if (!holds) {
        return Ending::disconnected;
    }
    if (gone) {
        return Ending::deviceGone;
    }
    return host.stopRequested() && !host.patienceEnded() ? Ending::cancelled : Ending::interrupted;
}

}  // namespace marlune
