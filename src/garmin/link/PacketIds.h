// Packet ids and command codes of the Garmin link (L001) and command (A010) protocols.
#pragma once

#include <cstdint>

namespace marlune::pid {

constexpr std::uint8_t kAck = 6;
constexpr std::uint8_t kCommand = 10;
constexpr std::uint8_t kTransferComplete = 12;
constexpr std::uint8_t kDateTime = 14;
constexpr std::uint8_t kProximityWaypoint = 19;
constexpr std::uint8_t kNak = 21;
constexpr std::uint8_t kRecords = 27;
constexpr std::uint8_t kRouteHeader = 29;
constexpr std::uint8_t kRoutePoint = 30;
constexpr std::uint8_t kTrackPoint = 34;
constexpr std::uint8_t kWaypoint = 35;
constexpr std::uint8_t kVoltages = 40;
constexpr std::uint8_t kPvt = 51;
constexpr std::uint8_t kRouteLink = 98;
constexpr std::uint8_t kTrackHeader = 99;
constexpr std::uint8_t kExtendedProductData = 248;
constexpr std::uint8_t kProtocolArray = 253;
constexpr std::uint8_t kProductRequest = 254;
constexpr std::uint8_t kProductData = 255;

}  // namespace marlune::pid

namespace marlune::command {

constexpr std::uint8_t kAbort = 0;
constexpr std::uint8_t kTransferPosition = 2;
constexpr std::uint8_t kTransferProximities = 3;
constexpr std::uint8_t kTransferRoutes = 4;
constexpr std::uint8_t kTransferTime = 5;
constexpr std::uint8_t kTransferTracks = 6;
constexpr std::uint8_t kTransferWaypoints = 7;
constexpr std::uint8_t kTransferVoltages = 17;
constexpr std::uint8_t kStartPvt = 49;
constexpr std::uint8_t kStopPvt = 50;

}  // namespace marlune::command
