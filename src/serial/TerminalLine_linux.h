// The line discipline of a terminal device on Linux.
#pragma once

#include <cstdint>

#include "serial/LineSettings.h"

namespace marlune {

// Makes the terminal a raw line without flow control and without modem control, applies the
// settings at once, keeping what has arrived, and reads back what the driver made of them. Returns
// 0, or the system's error code: EINVAL when the driver did not take a setting.
std::int32_t applyLineSettings(int terminal, const LineSettings& settings);

}  // namespace marlune
