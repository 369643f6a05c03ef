#include "usb/PacketAssembler.h"

#include <algorithm>

namespace marlune {
namespace {

// Whether the bytes may start an application packet, as far as they go. The reserved bytes are part
// of the test, so a block's padding is not taken for a header.
bool startsPacket(std::span<const std::uint8_t> bytes) {
    if (bytes.front() != GrmUSBPacket::kApplication) {
        return false;
    }
    for (const std::size_t reserved : {1U, 2U, 3U, 6U, 7U}) {
        if (reserved < bytes.size() && bytes[reserved] != 0) {
            return false;
        }
    }
    return bytes.size() < GrmUSBPacket::kHeaderSize ||
           GrmUSBPacket(bytes.first(GrmUSBPacket::kHeaderSize)).GetDataSize() <=
               PacketAssembler::kLargestData;
}

}  // namespace

bool PacketAssembler::begins(std::span<const std::uint8_t> block) {
    return block.size() >= GrmUSBPacket::kHeaderSize && startsPacket(block);
}

void PacketAssembler::append(std::span<const std::uint8_t> block) {
    bytes_.insert(bytes_.end(), block.begin(), block.end());
}

std::optional<GrmUSBPacket> PacketAssembler::take() {
    if (!bytes_.empty() && !startsPacket(bytes_)) {
        bytes_.clear();
    }
    if (bytes_.size() < GrmUSBPacket::kHeaderSize) {
        return std::nullopt;
    }
    const auto bytes = std::span<const std::uint8_t>(bytes_);
    const GrmUSBPacket header(bytes.first(GrmUSBPacket::kHeaderSize));
    const std::size_t size = GrmUSBPacket::kHeaderSize + header.GetDataSize();
    if (bytes_.size() < size) {
        return std::nullopt;
    }
    GrmUSBPacket packet(bytes.first(size));
    bytes_.erase(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(size));
    return packet;
}

}  // namespace marlune
