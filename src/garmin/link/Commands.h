// Commands to a Garmin unit: packet 10 with the command's code and 0.
#pragma once

#include <array>
#include <cstdint>

#include "garmin/link/GarminLink.h"
#include "garmin/link/PacketIds.h"

namespace marlune {

inline bool sendCommand(GarminLink& link, std::uint8_t code) {
    return link.send(pid::kCommand, std::array<std::uint8_t, 2>{code, 0});
}

// The same for a command that several packets answer.
inline bool requestTransfer(GarminLink& link, std::uint8_t code) {
    return link.request(pid::kCommand, std::array<std::uint8_t, 2>{code, 0});
}

}  // namespace marlune
