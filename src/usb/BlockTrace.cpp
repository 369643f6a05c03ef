#include "usb/BlockTrace.h"

#include "host/DebugTrace.h"

namespace marlune {

std::string blockLine(std::string_view label, std::span<const std::uint8_t> block) {
    // Each byte of the dump brings the blank that ends the separator.
    return std::string(label) + std::to_string(block.size()) + " -" + decimalDump(block);
}

}  // namespace marlune
