#pragma once

#include <string>

namespace marlune {

// What a connection says about the records of an upload file, before they are sent.
struct UploadFormat {
    std::string protocolCode;       // "GRM", "MGN", ...
    std::string waypointType;       // "D108"; empty when unknown
    std::string routeWaypointType;  // "D106" or empty for the waypoint type
    std::string trackProtocol;      // "A301" and "A302" have headers
    std::string trackHeaderType;    // "D310"
    std::string decimalSeparator;   // stands in for every "," of the file
};

}  // namespace marlune
