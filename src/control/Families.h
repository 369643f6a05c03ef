// The families of receivers that one control serves, and the one that its protocol code chooses.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "family/Family.h"
#include "garmin/GarminUnit.h"
#include "nmea/NmeaState.h"

namespace marlune {

// Those that there are, without the one for codes that nobody knows.
std::span<const FamilyTraits> familyTraits();

class Families {
public:
    // Both must outlive the families.
    Families(ControlServices& services, NmeaState& nmea);

    // The first one that serves the protocol code; for a code that nobody knows, a family without
    // services.
    [[nodiscard]] Family& chosen() const;
    [[nodiscard]] const std::vector<std::unique_ptr<Family>>& all() const { return all_; }

private:
    ConnectionState& connection_;
    GarminUnit unit_;
    std::vector<std::unique_ptr<Family>> all_;
};

}  // namespace marlune
