// Everything one control owns.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "control/Families.h"
#include "family/ConnectionState.h"
#include "host/DebugTrace.h"
#include "nmea/NmeaState.h"
#include "serial/ComPort.h"
#include "usb/UsbPort.h"

namespace marlune {

struct ControlState {
    ControlState(Host& hostOfControl, GpsControlEvents& eventsOfControl,
                 std::unique_ptr<SerialPort> serialPort)
        : host(hostOfControl),
          trace(host.documentsFolder()),
          port(host, std::move(serialPort)),
          services{{host, eventsOfControl, trace, records, reports}, port, usb, connection} {}

    [[nodiscard]] Family& family() const { return families.chosen(); }

    // Counts what begins and ends a connection: tells a gpsConnect that a handler closed or
    // replaced its connection meanwhile.
    std::uint32_t connections = 0;

    Host& host;
    DebugTrace trace;
    Records records;
    Reports reports;
    ComPort port;
    UsbPort usb;
    ConnectionState connection;
    NmeaState nmea;
    ControlServices services;
    Families families{services, nmea};
};

}  // namespace marlune
