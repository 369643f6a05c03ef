// The receiver's USB device: discovery and the raw operations that the USB packets rest on. This is
// the seam; libusb, the maker's Windows driver and a scripted device of the tests stand behind it.
// No operation shows a message.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace marlune {

class DebugTrace;

class UsbDevice {
public:
    UsbDevice() = default;
    UsbDevice(const UsbDevice&) = delete;
    UsbDevice& operator=(const UsbDevice&) = delete;
    virtual ~UsbDevice() = default;

    // Looks for the first receiver on the bus and keeps its path for open(). Empty when there is
    // none.
    virtual std::string findDevicePath() = 0;
    // Opens the path found, closing first what is open. False when that failed.
    virtual bool open() = 0;
    virtual void close() = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;
    // True when nothing can be written or read any more: the device is closed or, where the system
    // tells, was pulled out.
    [[nodiscard]] virtual bool isGone() const { return !isOpen(); }

    // Reads and drops what an earlier program or an interrupted transfer left in the device's
    // pipes, in bounded time. Nothing where the system's driver does that by itself.
    virtual void discard() {}

    // Writes a block within 50 ms: the number of bytes written, or -1 on time-out.
    virtual int writeBlock(std::span<const std::uint8_t> block) = 0;
    // Reads one block: the number of bytes that came, -1 when the time-out passed.
    virtual int readInterruptBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) = 0;
    // Reads one block: the number of bytes that came, 0 when the time-out passed.
    virtual int readBulkBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) = 0;

    virtual std::uint32_t queryApiVersion() = 0;
    // The size of the device's USB packets, in bytes.
    virtual std::uint32_t queryPacketSize() = 0;
};

// The platform's device. Blocks and time-outs are traced.
std::unique_ptr<UsbDevice> makeSystemUsbDevice(DebugTrace& trace);

}  // namespace marlune
