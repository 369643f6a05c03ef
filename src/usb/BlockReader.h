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
    // The next packet of a stream, each of its blocks within the time-out. Once that has passed,
    // what the other pipe still holds is taken without waiting; nothing when that is no packet.
    std::optional<GrmUSBPacket> nextPacket(int timeoutMilliseconds);

private:
    enum class Mode { undetermined, interrupt, bulk };

    // The next packet. `after`: the time-out of the reads that follow one that passed in silence.
    std::optional<GrmUSBPacket> next(int timeoutMilliseconds, int after);
    // Each reads one block. False: the interrupt pipe is silent.
    bool readInterrupt(int timeoutMilliseconds);
    void readBulk(int timeoutMilliseconds);
    // Looks at the block that stands at the start of a packet.
    void determineMode();
    // Gives up a packet that announced more than came, when the block begins anew.
    void dropWhatWasCutShort(bool isNotice);
    void append(std::size_t capacity);
    void dropPartial();
    // What a read brought, or that it timed out.
    void tellHost(int count, int timeoutMilliseconds);

    UsbLease& usb_;
    Services& services_;
    Mode mode_ = Mode::undetermined;
    PacketAssembler assembler_;
    std::vector<std::uint8_t> block_;
    bool short_ = false;  // the last block was not full: the unit had no more to send at once
};

}  // namespace marlune
