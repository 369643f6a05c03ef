// The control's USB device: the seam UsbDevice with the control's own rules on top.
//
// UsbLease is what a running procedure holds. A handler may close or reopen the device in the
// middle of a transfer; from then on the lease is lost: it reads as silence and writes nothing, so
// the procedure that holds it cannot touch somebody else's connection.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "usb/UsbDevice.h"

namespace marlune {

// An interrupt block as it is asked for.
inline constexpr std::size_t kInterruptBlock = 64;

class UsbPort {
public:
    // device: none for a port that never finds a receiver.
    explicit UsbPort(std::unique_ptr<UsbDevice> device = nullptr);

    // Replaces the device, which must be closed.
    void use(std::unique_ptr<UsbDevice> device);

    // Looks for the first receiver; empty when there is none.
    std::string findDevicePath();
    // Opens what was found, closing first what is open.
    bool open();
    void close();
    [[nodiscard]] bool isOpen() const { return device_ && device_->isOpen(); }
    [[nodiscard]] bool isGone() const { return !device_ || device_->isGone(); }

private:
    friend class UsbLease;

    std::unique_ptr<UsbDevice> device_;
    std::uint32_t openings_ = 0;  // counts open() and close(): tells a lease that it is lost
};

class UsbLease {
public:
    explicit UsbLease(UsbPort& port) : port_(port), openings_(port.openings_) {}

    // False once somebody else closed or reopened the device since the lease was taken.
    [[nodiscard]] bool holds() const { return openings_ == port_.openings_; }
    [[nodiscard]] bool isGone() const { return !holds() || port_.isGone(); }

    // As UsbDevice; a lost lease answers as a device that is silent.
    int writeBlock(std::span<const std::uint8_t> block);
    int readInterruptBlock(std::span<std::uint8_t> block, int timeoutMilliseconds);
    int readBulkBlock(std::span<std::uint8_t> block, int timeoutMilliseconds);
    void discard();

    // Closes the device and opens it again, keeping the lease.
    bool reopen();

private:
    [[nodiscard]] bool answers() const { return holds() && port_.isOpen(); }

    UsbPort& port_;
    std::uint32_t openings_;
};

}  // namespace marlune
