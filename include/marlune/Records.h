// The records of a receiver as values, at the full precision of what came over the line: what the
// control's text lines say rounded, and what they have no field for.
//
// Angles are degrees of WGS 84, north and east positive; lengths are metres, altitudes above the
// sea; temperatures degrees Celsius. Times are seconds since 1970-01-01 00:00:00 UTC. Texts are
// UTF-8. What a receiver does not know, or what its record has no field for, is an empty optional:
// an altitude of 0 is the sea's.
//
// GpsControl::records() gives them; docs/formats.md tells which type of record has which field.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace marlune {

struct WaypointRecord {
    std::string name;
    std::string comment;
    double latitude = 0;
    double longitude = 0;
    std::optional<float> altitude;
    std::optional<float> depth;
    std::optional<float> temperature;
    std::optional<float> proximity;  // the distance at which the receiver gives the alarm
    std::optional<double> time;      // of its making
    // In the numbering of Garmin's two-byte symbols, whatever the receiver.
    std::optional<std::int16_t> symbol;
    // As the text line has it: 0 symbol with name, 1 symbol only, 2 symbol with comment; D108 to
    // D110 keep the bits of their colour byte (0, 32, 64, 96).
    std::optional<std::uint8_t> display;
};

struct TrackPointRecord {
    double latitude = 0;
    double longitude = 0;
    std::optional<double> time;
    std::optional<float> altitude;
    std::optional<float> depth;
    std::optional<float> temperature;
    bool segmentStart = false;  // the first point behind a gap; always set on a track's first
};

struct TrackRecord {
    std::string name;             // empty for points that came without a header
    std::optional<bool> display;  // shown on the receiver's map
    std::optional<int> colour;    // in the receiver's numbering
    std::vector<TrackPointRecord> points;
};

// How a route goes from one of its points to the next.
struct RouteLinkRecord {
    std::int16_t linkClass = 0;
    std::array<std::uint8_t, 18> subclass{};
    std::string name;
};

struct RoutePointRecord {
    WaypointRecord point;
    std::optional<RouteLinkRecord> link;  // to the next point
};

struct RouteRecord {
    int number = 0;
    std::string name;
    std::vector<RoutePointRecord> points;
};

// A position that a receiver had at a moment.
struct FixRecord {
    double latitude = 0;
    double longitude = 0;
    std::optional<float> altitude;
    std::optional<double> time;
    // 2 two-dimensional, 3 three-dimensional, 4 and 5 the same with differential correction.
    std::optional<int> quality;
    std::optional<float> error;  // estimated, of the position in all three dimensions
    std::optional<float> horizontalError;
    std::optional<float> verticalError;
    // Metres a second.
    std::optional<float> eastSpeed;
    std::optional<float> northSpeed;
    std::optional<float> upSpeed;
};

// The records of the last transfer of each kind, in the order of their events, downloads and
// uploads alike: those for which an event was raised.
struct Records {
    std::vector<WaypointRecord> waypoints;
    std::vector<TrackRecord> tracks;
    std::vector<RouteRecord> routes;
    std::vector<WaypointRecord> proximities;
    std::optional<FixRecord> fix;  // of real time, or of getPosition
};

}  // namespace marlune
