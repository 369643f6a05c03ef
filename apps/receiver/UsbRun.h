// marlune-receiver on USB: the receiver on an emulated bus, and the program that is to see it.
#pragma once

#include <string>
#include <vector>

#include "receivers/Families.h"
#include "receivers/usb/ReceiverFunction.h"

namespace marlune::receivers {

struct UsbChoices {
    ReceiverOptions receiver;
    ReceiverFunction::Habit habit = ReceiverFunction::Habit::mixed;
    bool print = false;
    // The program that sees the bus and its arguments; without one, the bus stands until SIGINT,
    // SIGTERM or SIGHUP and its folder is printed, for programs that are started by other means.
    std::vector<std::string> command;
};

// Returns the program's status (128 + the signal that ended it), 0 without one. SIGUSR1 prints what
// the receiver holds. The signals that are waited for must not be handled elsewhere.
int runOnUsb(const UsbChoices& choices);

}  // namespace marlune::receivers
