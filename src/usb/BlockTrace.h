// The trace lines of USB blocks, the same on every platform.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace marlune {

// The label, the number of bytes and the bytes in decimal, with " - " between the parts:
// "BlockGet: 16 - 0 0 0 0 6 0 ...".
std::string blockLine(std::string_view label, std::span<const std::uint8_t> block);

}  // namespace marlune
