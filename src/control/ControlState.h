// Everything one control owns. Families (Families.h) take from it what their procedures need.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "family/ConnectionState.h"
#include "garmin/GarminState.h"
#include "host/Services.h"
#include "nmea/NmeaState.h"
#include "nmea/magellan/MagellanState.h"
#include "nmea/mlr/MlrState.h"
#include "serial/ComPort.h"
#include "storage/StorageUnit.h"
#include "usb/UsbPort.h"

namespace marlune {

struct ControlState {
    ControlState(Host& hostOfControl, GpsControlEvents& eventsOfControl,
                 std::unique_ptr<SerialPort> serialPort)
        : host(hostOfControl),
          trace(host.documentsFolder()),
          services{host, eventsOfControl, trace, records, reports},
          port(host, std::move(serialPort)) {}

    Host& host;
    DebugTrace trace;
    Records records;
    Reports reports;
    Services services;
    ComPort port;
    UsbPort usb;
    StorageUnit storage;

    ConnectionState connection;
    GarminState garmin;
    NmeaState nmea;
    MagellanState magellan;
    MlrState mlr;

    std::int32_t magellanRate = 0;  // 0 means 4800
    // What replaces every "," of an upload file's line before it is read.
    std::string decimalSetting = ".";
    // The upload file that is being sent.
    std::string uploadPath;
};

}  // namespace marlune
