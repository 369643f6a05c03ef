// The families of virtual receivers, by name: what marlune-receiver and the command line's
// "--port virtual" choose from. A new family is one row in Families.cpp.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "receivers/VirtualReceiver.h"

namespace marlune::receivers {

// What a receiver can be asked to be. A family leaves alone what means nothing to it.
struct ReceiverOptions {
    std::string unit;                 // one of the family's named units; empty for the first
    std::optional<int> productId;     // a unit described by its number instead of a name
    std::optional<int> version;       // its software version, in hundredths
    std::optional<std::string> tags;  // the protocols that it announces: "A100 D108 ..."
    std::string dataFile;             // its data as text lines; empty for built-in data
    std::optional<int> baud;  // its line speed in place of the family's own, bits per second
    std::vector<std::string> faults;  // see Faults.h
    double rate = 1;                  // records or fixes per second of a real-time stream
    bool hasFix = true;               // else a real-time stream has no position
    // Its date when it first hears or is due, in days since 30/12/1899; nothing for the system's.
    std::optional<double> now;
};

// A receiver's date when it first hears or is due: the one of the options, or the system's, UTC.
double firstDate(const ReceiverOptions& options);

struct Unit {
    std::string name;
    std::string description;
};

struct Family {
    std::string_view name;  // "garmin"
    std::string_view code;  // the control's code for it, as in SetGpsMark: "GRM"; may be empty
    std::vector<Unit> (*units)();
    // Throws std::invalid_argument for options that it cannot follow, with a text for the user.
    std::unique_ptr<VirtualReceiver> (*make)(const ReceiverOptions&);
};

const std::vector<Family>& receiverFamilies();

// The family of that name or code; throws std::invalid_argument, whose text lists the names.
const Family& receiverFamily(std::string_view nameOrCode);

}  // namespace marlune::receivers
