// Waiting on the host's clock, the same in every sentence procedure.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

#include "host/TransferLog.h"
#include "marlune/Host.h"
#include "serial/ComPort.h"

namespace marlune {

// How much time a loop lets pass at once where no read does.
inline constexpr double kWaitSlice = 0.05;

// The clock rounded to a whole second: where time-outs of whole seconds start from.
inline double roundedClock(Host& host) {
    return std::nearbyint(host.secondsClock());
}

// A port that is gone reads as silence at once: time must pass here, or the loop would spin. One
// that was taken away ends the loop.
inline void pauseWhenGone(const PortLease& port, Host& host) {
    if (port.isGone() && port.holds()) {
        host.pause(kWaitSlice);
        host.waitedForBytes(kWaitSlice);
    }
}

// Reads what is already here, or waits for one byte; returns how many came. The time-out of a read
// grows with what is asked for, and the host's events wait as long.
inline std::size_t readSome(PortLease& port, std::span<std::uint8_t> into) {
    return port.readArrived(into.first(std::clamp<std::size_t>(port.available(), 1, into.size())));
}

// False once a handler took the port away or the host wants everything to end.
inline bool mayGoOn(const PortLease& port, Host& host) {
    return port.holds() && !host.stopRequested();
}

// Why a transfer stops whose port brings nothing any more.
inline Ending endingOfSilence(const PortLease& port, Host& host) {
    return endingOfSilentLine(host, port.holds(), port.isGone());
}

// The same for an upload, which also ends where nobody hears it.
inline bool maySend(const PortLease& port, Host& host) {
    return mayGoOn(port, host) && !port.isGone();
}

// How an upload ended whose sentences nobody answers. allTaken: the system took what was written.
inline Ending endingOfUpload(const PortLease& port, Host& host, bool allTaken) {
    if (allTaken && maySend(port, host)) {
        return Ending::complete;
    }
    const Ending ending = endingOfSilence(port, host);
    return ending == Ending::interrupted ? Ending::deviceGone : ending;
}

}  // namespace marlune
