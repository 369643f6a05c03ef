// The packet ids and command codes of Garmin's hand-held units. The ids of records are the values
// of RecordKind (Holdings.h).
#pragma once

#include <cstdint>

namespace marlune::receivers::garmin {

// What a command code asks for.
enum class Command {
    abort = 0,
    almanac = 1,
    position = 2,
    proximities = 3,
    routes = 4,
    time = 5,
    tracks = 6,
    waypoints = 7,
    turnOff = 8,
    voltages = 17,
    startPvt = 49,
    stopPvt = 50
};

constexpr std::uint8_t kAck = 6;
constexpr std::uint8_t kCommand = 10;
constexpr std::uint8_t kComplete = 12;
constexpr std::uint8_t kDate = 14;
constexpr std::uint8_t kPosition = 17;
constexpr std::uint8_t kNak = 21;
constexpr std::uint8_t kRecordsCount = 27;
constexpr std::uint8_t kVoltages = 40;
constexpr std::uint8_t kPvt = 51;
constexpr std::uint8_t kFurtherProductData = 248;
constexpr std::uint8_t kProtocolArray = 253;
constexpr std::uint8_t kProductRequest = 254;
constexpr std::uint8_t kProductData = 255;

}  // namespace marlune::receivers::garmin
