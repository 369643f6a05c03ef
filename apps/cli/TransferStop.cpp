#include "cli/TransferStop.h"

#include <chrono>
#include <thread>
#include <utility>

namespace marlune::cli {

bool TransferStop::requested() {
    if (output_.broken()) {
        host_.requestStop();
    }
    return host_.ends();
}

bool TransferStop::act() {
    if (!requested()) {
        return false;
    }
    if (!std::exchange(stopped_, true)) {
        if (!listenOnly_) {
            control_.StopTransfert();
        }
        control_.StopPvtData();
        control_.StopNMEA();
    }
    return true;
}

void TransferStop::disconnect() {
    // The longest record at 9600 baud takes about this long.
    constexpr std::chrono::milliseconds kRecord(500);
    if (act()) {
        std::this_thread::sleep_for(kRecord);
        control_.ResetComBuffers();
    }
    control_.gpsDisconnect();
}

}  // namespace marlune::cli
