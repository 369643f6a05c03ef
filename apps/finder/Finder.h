// Asks ports who is there: each family's own identification, with short patience. Nothing is
// written to a port that another program has open, nor to one that nothing is plugged into unless
// that is wanted.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "finder/Ports.h"
#include "marlune/Host.h"

namespace marlune::finder {

// Somebody who answered.
struct Found {
    PortEntry port;
    std::string mark;      // "GRM", "MGN", "MLR", "GRM_USB"
    std::string identity;  // what the control's getIdent tells of the receiver

    // What makes a program talk to it: "--port /dev/ttyUSB0 --mark GRM".
    [[nodiscard]] std::string options() const;
};

// "GPSId: ... Version: ... - ...": the receiver's part of what the control's getIdent tells.
std::string aboutReceiver(const std::string& ident);

class Finder {
public:
    // The host gives drives and folders; its boxes are not shown. It must outlive the finder.
    explicit Finder(Host& host) : host_(host) {}

    // Seconds that each family may take to answer, at most.
    double patience = 4;
    // Also the machine's own ports, without a plugged adapter.
    bool all = false;
    // Called before a family is asked, and when a port is passed over, with the reason.
    std::function<void(const PortEntry& port, const std::string& mark)> onAsk;
    std::function<void(const PortEntry& port, const std::string& reason)> onSkip;

    // The first family that answers on a port.
    std::optional<Found> ask(const PortEntry& port);
    // All that answer on those ports, until the host asks to stop.
    std::vector<Found> find(const std::vector<PortEntry>& ports);

private:
    [[nodiscard]] std::string reasonToSkip(const PortEntry& port) const;
    std::optional<Found> askFor(const PortEntry& port, const std::string& mark);

    Host& host_;
};

}  // namespace marlune::finder
