// What the families of receivers share about the present connection.
#pragma once

#include <string>

namespace marlune {

struct ConnectionState {
    // "GRM", "GRM_USB", "GRM_USB_GPX", "MGN", "MLR", or whatever the host chose.
    std::string protocolCode = "GRM";

    // What the receiver told of itself; each family fills what it learns.
    std::string productId;
    std::string softwareVersion;
    std::string description;

    bool connected = false;        // a receiver was identified
    bool transferRunning = false;  // cleared by StopTransfert
    bool realTimeRunning = false;  // cleared by StopPvtData
};

// "Marlune Version 1.0.0 -  GPSId: ... Version: ... - ...".
std::string identText(const ConnectionState& state);

}  // namespace marlune
