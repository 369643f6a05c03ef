// What every procedure with a Garmin unit is handed, and asks of it.
#pragma once

#include <cstdint>

#include "family/ConnectionState.h"
#include "garmin/GarminUnit.h"
#include "garmin/link/GarminLink.h"
#include "host/Services.h"

namespace marlune {

class GarminProcedure {
public:
    // All of it must outlive the procedure.
    GarminProcedure(Services& services, GarminLink& link, ConnectionState& state, GarminUnit& unit)
        : services_(services), link_(link), state_(state), unit_(unit) {}

protected:
    [[nodiscard]] bool mayGoOn() const { return link_.holds() && !services_.host.stopRequested(); }
    [[nodiscard]] char separator() const { return services_.host.decimalSeparator(); }
    [[nodiscard]] const GpsCapability& capabilities() const { return unit_.capabilities(); }

    // What it means for a transfer that a packet of that id came instead of what was waited for; 0
    // is silence.
    [[nodiscard]] Ending endingOf(std::uint16_t pid) const;
    [[nodiscard]] Ending endingOfSilence() const { return endingOf(0); }

    Services& services_;
    GarminLink& link_;
    ConnectionState& state_;
    GarminUnit& unit_;
};

}  // namespace marlune
