// The speeds that receivers listen at, in baud, and the settings texts made of them.
#pragma once

#include <cstdint>
#include <string>

namespace marlune {

inline constexpr std::int32_t kGarminSpeed = 9600;
inline constexpr std::int32_t kNmeaSpeed = 4800;
// The data blocks of MLR receivers.
inline constexpr std::int32_t kMlrBlockSpeed = 38400;

// "baud=4800 parity=n data=8 stop=1".
inline std::string lineSettings(std::int32_t speed, int stopBits = 1) {
    return "baud=" + std::to_string(speed) + " parity=n data=8 stop=" + std::to_string(stopBits);
}

}  // namespace marlune
