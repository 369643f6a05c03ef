// Controls over other devices than the platform's, for this tree's own tests, fuzzers and benches.
#pragma once

#include <memory>

#include "marlune/GpsControl.h"
#include "serial/SerialPort.h"
#include "usb/UsbDevice.h"

namespace marlune {

struct ControlFactory {
    // The control owns the devices. Without a USB device it finds none.
    static std::unique_ptr<GpsControl> make(Host& host, GpsControlEvents& events,
                                            std::unique_ptr<SerialPort> port,
                                            std::unique_ptr<UsbDevice> usb);
};

}  // namespace marlune
