// The device end of a USB cable, over memory: it is handed whole messages that the host wrote to
// the bulk pipe, and what it puts on its two input pipes is collected from it. No thread, no I/O
// and no clock of its own, so that the same device runs in a test on a fake clock and on an
// emulated bus.
//
// Time is in seconds on a clock of the caller's that never goes back.
//
// Thread: one at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace marlune::receivers {

enum class UsbPipe { interruptIn, bulkIn };

// One transfer on an input pipe. The bus cuts it into packets; an empty one is a zero-length
// packet. A transfer that ends with a full packet is not closed by itself.
struct UsbMessage {
    UsbPipe pipe = UsbPipe::interruptIn;
    std::vector<std::uint8_t> bytes;
};

class UsbFunction {
public:
    UsbFunction() = default;
    UsbFunction(const UsbFunction&) = delete;
    UsbFunction& operator=(const UsbFunction&) = delete;
    virtual ~UsbFunction() = default;

    // A transfer of the host's, from its first byte to the short packet that ended it.
    virtual void hostWrote(std::span<const std::uint8_t> message, double now) = 0;

    // Tells the device that time has passed. Harmless when nothing is due.
    virtual void elapse(double /*now*/) {}
    // When elapse() must be called next; nothing when the device only waits for the host.
    [[nodiscard]] virtual std::optional<double> nextDeadline() const { return std::nullopt; }

    // True once the device has gone from the bus by its own doing.
    [[nodiscard]] virtual bool gone() const { return false; }

    // What was said since the last call, in order.
    virtual std::vector<UsbMessage> takeOutput() = 0;
};

}  // namespace marlune::receivers
