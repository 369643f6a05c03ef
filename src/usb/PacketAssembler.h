// Puts application packets together from the blocks that a pipe delivers: a packet may span blocks,
// and a block may hold the end of one packet and the start of the next.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "usb/GrmUSBPacket.h"

namespace marlune {

class PacketAssembler {
public:
    // Receivers' records are far smaller; what claims more is no packet and is dropped.
    static constexpr std::size_t kLargestData = 65536;

    // Whether a block begins with the header of an application packet.
    static bool begins(std::span<const std::uint8_t> block);

    // Adds a block as it came.
    void append(std::span<const std::uint8_t> block);

    // The next complete application packet; nothing while it is still on its way. What is no
    // application packet ends the block that it stands in: padding, not data.
    std::optional<GrmUSBPacket> take();

    // True in the middle of a packet.
    [[nodiscard]] bool isPartial() const { return !bytes_.empty(); }
    void clear() { bytes_.clear(); }

private:
    std::vector<std::uint8_t> bytes_;
};

}  // namespace marlune
