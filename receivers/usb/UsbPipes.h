// The pipes of one USB device as a host controller serves them: requests of the host (URBs) on one
// side, packets of the device on the other. Pure state, no system calls: EmulatedUsbBus carries the
// requests to and from a process.
//
// A read is done when it is full or when a packet shorter than the pipe's came; a packet that does
// not fit into what is left of it is a babble. A write belongs to the message that a short packet
// ends: writing full packets alone leaves the device waiting.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "receivers/usb/UsbFunction.h"

namespace marlune::receivers {

class UsbPipes {
public:
    static constexpr std::uint8_t kBulkOut = 0x02;
    static constexpr std::uint8_t kBulkIn = 0x82;
    static constexpr std::uint8_t kInterruptIn = 0x83;

    struct PacketSizes {
        std::size_t bulk = 64;
        std::size_t interrupt = 64;
    };

    // One request of the host.
    struct Request {
        std::uint64_t id = 0;  // the host's own name for it
        std::uint8_t endpoint = 0;
        std::vector<std::uint8_t> bytes;  // to write, or what a read brought
        std::size_t wanted = 0;           // the room of a read
        int status = 0;                   // 0 or a negative error code of the system
    };

    // What goes wrong on the cable, on order.
    struct Faults {
        bool refuseWrites = false;           // the device takes no packet: writes wait for ever
        std::optional<std::uint8_t> stall;   // the next request on this endpoint stalls
        std::optional<std::uint8_t> babble;  // the next one is overrun by the device
        // The messages of the device that come only once the host gave up a read: "late" answers.
        int lateMessages = 0;
    };

    UsbPipes(UsbFunction& function, PacketSizes sizes) : function_(function), sizes_(sizes) {}

    // Takes a request of the host. Returns 0 or a positive error code of the system.
    int submit(Request request, double now);
    // The host gives a request up: it comes back with what it brought so far. False when it is not
    // waiting.
    bool discard(std::uint64_t id);
    // The next request that is done.
    std::optional<Request> reap();
    [[nodiscard]] bool hasDone() const { return !done_.empty(); }

    // Lets time pass in the device.
    void elapse(double now);
    [[nodiscard]] std::optional<double> nextDeadline() const { return function_.nextDeadline(); }

    // Whether the device wants to be gone.
    [[nodiscard]] bool deviceGone() const { return function_.gone(); }
    // The device has gone: every request comes back failed, none is taken any more.
    void unplug();

    void clearHalt(std::uint8_t endpoint);

    Faults faults;

private:
    using Packet = std::vector<std::uint8_t>;

    [[nodiscard]] std::size_t packetSize(std::uint8_t endpoint) const {
        return endpoint == kInterruptIn ? sizes_.interrupt : sizes_.bulk;
    }
    void write(Request request, double now);
    void collect();
    void queue(const UsbMessage& message);
    void serve(std::uint8_t endpoint);
    bool fill(Request& request, std::deque<Packet>& packets) const;
    void finish(Request request, int status);

    UsbFunction& function_;
    PacketSizes sizes_;
    bool gone_ = false;
    std::map<std::uint8_t, bool> halted_;
    std::vector<std::uint8_t> message_;  // of the host, until its short packet comes
    std::map<std::uint8_t, std::deque<Request>> waiting_;
    std::map<std::uint8_t, std::deque<Packet>> packets_;
    std::vector<UsbMessage> late_;
    std::deque<Request> done_;
};

}  // namespace marlune::receivers
