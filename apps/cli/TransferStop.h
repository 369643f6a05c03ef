// Ends what runs when the program is to end, so that the receiver answers the next program.
#pragma once

#include "cli/HostServices.h"
#include "cli/Output.h"
#include "marlune/GpsControl.h"

namespace marlune::cli {

class TransferStop {
public:
    TransferStop(GpsControl& control, HostServices& host, const Output& output)
        : control_(control), host_(host), output_(output) {}

    // What runs is no transfer but the listener: nothing is said to whom it listens to.
    void listenOnly() { listenOnly_ = true; }

    // True once a signal came, or nobody reads the output any more.
    [[nodiscard]] bool requested();

    // For the places where a handler may act: once a stop is requested, stops the transfer in the
    // receiver's own terms. True when a stop is requested.
    bool act();

    // Disconnects. After a stop, hears the receiver out first: the record that it was sending would
    // meet the next program in the middle.
    void disconnect();

private:
    GpsControl& control_;
    HostServices& host_;
    const Output& output_;
    bool listenOnly_ = false;
    bool stopped_ = false;
};

}  // namespace marlune::cli
