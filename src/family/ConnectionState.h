// What the families of receivers share about the present connection.
#pragma once

#include <cstdint>
#include <string>

namespace marlune {

struct ConnectionState {
    // "GRM", "GRM_USB", "GRM_USB_GPX", "MGN", "MLR", or whatever the host chose.
    std::string protocolCode = "GRM";

    // What the receiver told of itself; each family fills what it learns.
    std::string productId;
    std::string softwareVersion;
    std::string description;

    // What replaces every "," of an upload file's line before it is read.
    std::string decimalSetting = ".";
    // Of Magellan receivers, in baud; 0 means the usual one.
    std::int32_t magellanRate = 0;

    bool connected = false;        // a receiver was identified
    bool transferRunning = false;  // cleared by StopTransfert
    bool realTimeRunning = false;  // cleared by StopPvtData
};

// Forgets what a receiver told of itself.
void forgetReceiver(ConnectionState& state);

// "Marlune Version 1.0.0 -  GPSId: ... Version: ... - ...".
std::string identText(const ConnectionState& state);

}  // namespace marlune
