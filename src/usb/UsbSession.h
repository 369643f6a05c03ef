// The session that a receiver wants before it answers application packets.
#pragma once

#include <optional>

#include "usb/GrmUSBPacket.h"
#include "usb/UsbPort.h"

namespace marlune {

// Drops what the pipes still hold, asks for a session, and answers whether the receiver's next
// block told that it started (within 200 ms).
bool startSession(UsbLease& usb);

// One packet from the interrupt pipe; nothing when the time-out passed. A late "session started"
// in front of it is skipped: slow units answer a repeated start twice.
std::optional<GrmUSBPacket> readInterruptPacket(UsbLease& usb, int timeoutMilliseconds);

}  // namespace marlune
