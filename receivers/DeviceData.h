// What a receiver's memory holds, whatever its family, and the text lines that it is read from and
// printed as: those that the control gives and takes, and one more for proximity waypoints.
//
//   W;ident;latitude;longitude;comment;altitude;symbol;display     a waypoint
//   P;ident;latitude;longitude;comment;altitude;symbol;display;distance
//                                                    a proximity waypoint, distance in metres
//   N;name                                           a track, followed by its points
//   T;latitude;longitude;time;altitude;new segment   a track point
//   R;number;name                                    a route, followed by its points as W lines
//   L;RteLink ident                                  the link after the route's point in front of
//   it
//
// Degrees, north and east positive; time in days since 30/12/1899, 0 or nothing when unknown;
// altitude in metres, nothing when unknown; new segment is 0 or not. T;180;180 is a point without
// position. What follows the coordinates may be left out. Decimals follow a point or a comma.
//
// A W line belongs to the route above it; a line of another kind, or one that starts with "-", ends
// the route. Lines that start with any other character, and empty ones, are skipped.
//
// Texts are UTF-8 in memory. A file may be UTF-8, with or without byte-order mark, or Windows-1252.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marlune::receivers {

struct Place {
    std::string ident;
    double latitude = 0;
    double longitude = 0;
    std::string comment;
    std::optional<double> altitude;
    int symbol = 18;  // Garmin's full numbering; 18 is the plain dot
    int display = 0;  // 0 symbol with name, 1 symbol only, 2 symbol with comment

    bool operator==(const Place&) const = default;
};

struct Proximity {
    Place place;
    double distance = 0;

    bool operator==(const Proximity&) const = default;
};

struct TrackPoint {
    double latitude = 0;  // 180 with longitude 180: no position
    double longitude = 0;
    double time = 0;
    std::optional<double> altitude;
    bool newSegment = false;

    [[nodiscard]] bool hasPosition() const { return latitude < 179.5 || longitude < 179.5; }
    bool operator==(const TrackPoint&) const = default;
};

struct Track {
    std::string name;
    std::vector<TrackPoint> points;

    bool operator==(const Track&) const = default;
};

struct Route {
    int number = 0;
    std::string name;
    std::vector<Place> points;
    std::vector<std::string> links;  // the link after each point; shorter when there are none

    bool operator==(const Route&) const = default;
};

struct DeviceData {
    std::vector<Place> places;
    std::vector<Proximity> proximities;
    std::vector<Track> tracks;
    std::vector<Route> routes;
};

// Reads a file's bytes. Throws std::invalid_argument, whose text names the line and its fault.
DeviceData readData(std::string_view bytes);

// Reads the file of that path, as above; a file that cannot be read throws std::invalid_argument
// too.
DeviceData readDataFile(const std::string& path);

// Believable holdings with everything in them: north and south, east and west, accents, tracks of
// several segments.
DeviceData builtInData();

// Where a unit is that holds these places: at the first of them; somewhere without any.
Place whereabouts(const std::vector<Place>& places);

// The lines: coordinates to six decimals and altitudes to whole metres, as the control prints them.
std::string placeLine(const Place& place);
std::vector<std::string> linesOf(const DeviceData& data);

// The shortest text of a number with at most that many decimals: "45.5", "0".
std::string numberText(double value, int decimals);
// The shortest text that reads back to the same number, without exponent.
std::string numberText(double value);

}  // namespace marlune::receivers
