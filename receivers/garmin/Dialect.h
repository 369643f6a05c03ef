// The packet ids and command codes of Garmin's two link and command protocols: L001 with A010 of
// the hand-held units, L002 with A011 of the panel-mounted aviation units.
#pragma once

#include <cstdint>

namespace marlune::receivers::garmin {

// What a command code asks for.
enum class Command {
    none,
    abort,
    almanac,
    position,
    proximities,
    routes,
    time,
    tracks,
    waypoints,
    turnOff,
    voltages,
    startPvt,
    stopPvt
};

struct Dialect {
    std::uint8_t command;
    std::uint8_t complete;
    std::uint8_t date;
    std::uint8_t position;
    std::uint8_t records;
    std::uint8_t waypoint;
    std::uint8_t routeHeader;
    std::uint8_t routePoint;
    std::uint8_t proximity;
    // 0, which no packet has, where the protocol lacks the kind.
    std::uint8_t routeLink;
    std::uint8_t trackHeader;
    std::uint8_t trackPoint;
    Command (*meaning)(int code);
};

// The ids that both share.
constexpr std::uint8_t kAck = 6;
constexpr std::uint8_t kNak = 21;
constexpr std::uint8_t kProtocolArray = 253;
constexpr std::uint8_t kProductRequest = 254;
constexpr std::uint8_t kProductData = 255;
constexpr std::uint8_t kFurtherProductData = 248;
// Of the hand-held units only.
constexpr std::uint8_t kVoltages = 40;
constexpr std::uint8_t kPvt = 51;

inline Command handHeldCommand(int code) {
    switch (code) {
        case 0:
            return Command::abort;
        case 1:
            return Command::almanac;
        case 2:
            return Command::position;
        case 3:
            return Command::proximities;
        case 4:
            return Command::routes;
        case 5:
            return Command::time;
        case 6:
            return Command::tracks;
        case 7:
            return Command::waypoints;
        case 8:
            return Command::turnOff;
        case 17:
            return Command::voltages;
        case 49:
            return Command::startPvt;
        case 50:
            return Command::stopPvt;
        default:
            return Command::none;
    }
}

inline Command panelCommand(int code) {
    switch (code) {
        case 0:
            return Command::abort;
        case 4:
            return Command::almanac;
        case 8:
            return Command::routes;
        case 17:
            return Command::proximities;
        case 20:
            return Command::time;
        case 21:
            return Command::waypoints;
        case 26:
            return Command::turnOff;
        default:
            return Command::none;
    }
}

inline constexpr Dialect kHandHeld = {
    10, 12, 14, 17, 27, 35, 29, 30, 19, 98, 99, 34, handHeldCommand};
inline constexpr Dialect kPanel = {11, 12, 20, 24, 35, 43, 37, 39, 27, 0, 0, 0, panelCommand};

}  // namespace marlune::receivers::garmin
