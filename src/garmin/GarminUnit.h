// What the control knows of the Garmin unit on a serial line or on USB.
#pragma once

#include <optional>
#include <string>

#include "garmin/GpsCapability.h"

namespace marlune {

struct GarminUnit {
    // None until an identification made one.
    std::optional<GpsCapability> capability;

    std::string voltages;

    // The capabilities, all empty while there is no capability object.
    [[nodiscard]] const GpsCapability& capabilities() const {
        static const GpsCapability kNone;
        return capability ? *capability : kNone;
    }
};

}  // namespace marlune
