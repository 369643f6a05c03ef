#include "usb/UsbSession.h"

#include <array>

namespace marlune {
namespace {

constexpr int kSessionTimeout = 200;
// More than one late answer is no receiver's habit; without a bound a unit that repeats it for ever
// would hold the control.
constexpr int kLateAnswers = 4;

}  // namespace

bool startSession(UsbLease& usb) {
    usb.discard();
    const auto request =
        GrmUSBPacket::build(GrmUSBPacket::kUsbLayer, GrmUSBPacket::kStartSession, {});
    if (usb.writeBlock(request) <= 0) {
        return false;
    }
    std::array<std::uint8_t, kInterruptBlock> reply{};
    usb.readInterruptBlock(reply, kSessionTimeout);
    // Only the low byte of the packet id is looked at, whatever the packet's type.
    return reply[4] == GrmUSBPacket::kSessionStarted;
}

std::optional<GrmUSBPacket> readInterruptPacket(UsbLease& usb, int timeoutMilliseconds) {
    for (int i = 0; i <= kLateAnswers; ++i) {
        std::array<std::uint8_t, kInterruptBlock> block{};
        const int count = usb.readInterruptBlock(block, timeoutMilliseconds);
        if (count <= 0) {
            return std::nullopt;
        }
        const std::span<const std::uint8_t> bytes = block;
        GrmUSBPacket packet(bytes.first(static_cast<std::size_t>(count)));
        if (!packet.isSessionStarted()) {
            return packet;
        }
    }
    return std::nullopt;
}

}  // namespace marlune
