// What a receiver may hang on: the serial ports of this machine, the Garmin units on its USB bus,
// and the drives that are units. Looking writes nothing to any of them.
#pragma once

#include <string>
#include <vector>

#include "marlune/Host.h"

namespace marlune::finder {

enum class PortKind {
    serial,
    usb,     // a unit that speaks Garmin's own USB protocol
    drive,   // a unit that is a drive
    mtp,     // a unit that speaks MTP, mounted as a folder
    builtIn  // a virtual receiver
};

struct PortEntry {
    PortKind kind = PortKind::serial;
    // "/dev/ttyUSB0", "usb:1:5", the drive's root, "virtual:etrex".
    std::string path;
    int number = 0;         // the COM number that means it; 0 for none
    std::string vendor;     // of what is plugged in, as it calls itself; empty when nobody tells
    std::string product;    // likewise
    bool pluggedIn = true;  // false for a port of the machine itself, which is always there
    bool mayOpen = true;    // for this user
    // The programs that have it open, as far as this user may see them, or who left a lock file:
    // "gpsd (812)". Empty for a port that is free.
    std::string holder;
    std::string mark;  // the family, where the kind tells it: "GRM_USB"
};

// The host's COM numbers and drives count. Ports that a number means and that the system does not
// list (a pseudo terminal, a link) are among them.
std::vector<PortEntry> listPorts(Host& host);

// The virtual receivers, each as a port.
std::vector<PortEntry> virtualPorts();

// Who has the device of that path open, or locked; empty when nobody is known to.
std::string holderOf(const std::string& path);

}  // namespace marlune::finder
