// Reads application packets over the receiver's two input pipes. A receiver answers either on the
// interrupt pipe itself, or tells there that data is available on the bulk pipe; a bulk run ends
// with an empty block and the reader goes back to the interrupt pipe.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "host/Services.h"
#include "usb/GrmUSBPacket.h"
#include "usb/PacketAssembler.h"
#include "usb/UsbPort.h"

namespace marlune {

class BlockReader {
public:
    // Both must outlive the reader.
    BlockReader(UsbLease& usb, Services& services) : usb_(usb), services_(services) {}

    // Writes a request and gathers every packet that follows, until 500 ms pass in silence. Empty
    // when the request could not be written. Ends early when the host requests a stop.
    std::vector<GrmUSBPacket> getBlocks(std::span<const std::uint8_t> request);

    // Starts afresh on the interrupt pipe.
    void restart();
    // The next packet, each block within the time-out; nothing when the interrupt pipe stayed
    // silent.
    std::optional<GrmUSBPacket> nextPacket(int timeoutMilliseconds);

private:
    enum class Mode { undetermined, interrupt, bulk };

    // Each reads one block. False: the interrupt pipe is silent.
    bool readInterrupt(int timeoutMilliseconds);
    void readBulk(int timeoutMilliseconds);
    // Looks at the block that stands at the start of a packet.
    void determineMode();
    void dropPartial();
    // What a read brought, or that it timed out.
    void tellHost(int count, int timeoutMilliseconds);

    UsbLease& usb_;
    Services& services_;
    Mode mode_ = Mode::undetermined;
    PacketAssembler assembler_;
    std::vector<std::uint8_t> block_;
};

}  // namespace marlune
