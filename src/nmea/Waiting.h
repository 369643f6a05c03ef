// Waiting on the host's clock, the same in every sentence procedure.
#pragma once

#include <cmath>

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
    }
}

// False once a handler took the port away or the host wants everything to end.
inline bool mayGoOn(const PortLease& port, Host& host) {
    return port.holds() && !host.stopRequested();
}

}  // namespace marlune
