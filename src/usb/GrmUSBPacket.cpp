#include "usb/GrmUSBPacket.h"

#include <algorithm>

namespace marlune {
namespace {

// The little-endian number in at most four bytes; bytes that are missing count as 0.
std::uint32_t littleEndian(std::span<const std::uint8_t> bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = bytes.size(); i > 0; --i) {
        value = (value << 8U) | bytes[i - 1];
    }
    return value;
}

std::span<const std::uint8_t> part(std::span<const std::uint8_t> bytes, std::size_t offset,
                                   std::size_t size) {
    const std::size_t from = std::min(offset, bytes.size());
    return bytes.subspan(from, std::min(size, bytes.size() - from));
}

}  // namespace

std::vector<std::uint8_t> GrmUSBPacket::build(std::uint8_t ptype, std::uint8_t pid,
                                              std::span<const std::uint8_t> data) {
    // A single byte is not sent: the commands of this protocol have two bytes of data or none, and
    // one byte is what an empty array of the callers looks like.
    const std::size_t size = data.size() >= 2 ? data.size() : 0;
    std::vector<std::uint8_t> packet(kHeaderSize + size);
    packet[0] = ptype;
    packet[4] = pid;
    for (std::size_t i = 0; i < 4; ++i) {
        packet[8 + i] = static_cast<std::uint8_t>(size >> (8 * i));
    }
    std::copy_n(data.begin(), size, packet.begin() + kHeaderSize);
    return packet;
}

void GrmUSBPacket::parse(std::span<const std::uint8_t> received) {
    ptype_ = received.empty() ? std::uint8_t{0} : received[0];
    pid_ = static_cast<std::uint16_t>(littleEndian(part(received, 4, 2)));
    dataSize_ = littleEndian(part(received, 8, 4));
    const auto came = part(received, kHeaderSize, dataSize_);
    data_.assign(came.begin(), came.end());
}

}  // namespace marlune
