// A USB bus with one device on it, for programs that know nothing of it: unmodified libusb finds,
// opens and talks to the device through the files and requests of the kernel's usbfs.
//
// It is made with umockdev, whose library stands between a program and the system: the program runs
// under umockdev-wrapper, with the bus's folder in UMOCKDEV_DIR. A process may have one bus at a
// time. For a bus and its user in one process, that process runs under umockdev-wrapper.
//
// The device's requests are served on a thread of the bus. Everything public here may be called
// from any thread; the function is only called under the bus's lock.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "receivers/usb/UsbFunction.h"
#include "receivers/usb/UsbPipes.h"

namespace marlune::receivers {

class EmulatedUsbBus {
public:
    struct Settings {
        std::uint16_t vendor = 0x091E;
        std::uint16_t product = 0x0003;
        UsbPipes::PacketSizes packetSizes = {};
        int address = 4;  // on bus 1
        // 0: for ever; otherwise the device is pulled out in place of its nth request, counted over
        // the device's whole time on the bus.
        int unplugAtRequest = 0;
    };

    // What happened on the bus.
    struct Counts {
        int claims = 0;
        int releases = 0;
        int requests = 0;  // reads and writes
    };

    // The device is plugged in at once; the function must outlive the bus. Throws
    // std::runtime_error when the system does not give what it takes.
    EmulatedUsbBus(UsbFunction& function, Settings settings);
    EmulatedUsbBus(const EmulatedUsbBus&) = delete;
    EmulatedUsbBus& operator=(const EmulatedUsbBus&) = delete;
    ~EmulatedUsbBus();

    // The folder that UMOCKDEV_DIR must name for a program that is to see this bus.
    [[nodiscard]] std::string folder() const;
    // The device's node, as the program sees it.
    [[nodiscard]] std::string node() const;
    // What opening the node amounts to on this system, for changing who may.
    [[nodiscard]] std::string systemNode() const;

    void unplug();
    // Changes what goes wrong on the cable.
    void fail(const std::function<void(UsbPipes::Faults&)>& change);

    // Runs something while no request is served, so that it may look at the function.
    void locked(const std::function<void()>& run);

    [[nodiscard]] Counts counts() const;
    // Whether a kernel driver is bound to the device, as one is before a program takes it.
    [[nodiscard]] bool driverAttached() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace marlune::receivers
