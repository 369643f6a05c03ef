// Upload files: text files of the record lines that events carry, which the uploads send.
//
// The first character of a line selects its record; lines that begin otherwise (headers, blank
// lines, remarks) are skipped. Files are in Windows-1252, or in UTF-8 when they begin with a
// byte-order mark and are valid UTF-8 throughout; lines end with CR LF or LF.
//
// The readers stop at an error (a line of too few fields, a number out of range, a file that the
// system does not open, whose text is then shown) and keep what they had gathered. When no file of
// that name exists, the host's file chooser is asked; without an answer the box of
// Fichier::Existant tells so.
#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "garmin/records/Route.h"
#include "garmin/records/Trace.h"
#include "garmin/records/TrkHeader.h"
#include "garmin/records/Waypoint.h"
#include "marlune/Host.h"

namespace marlune {

// What the connection says about the records that will be sent.
struct UploadFormat {
    std::string protocolCode;       // "GRM", "MGN", ...
    std::string waypointType;       // "D108"; empty when unknown
    std::string routeWaypointType;  // "D106" or empty for the waypoint type
    std::string trackProtocol;      // "A301" and "A302" have headers
    std::string trackHeaderType;    // "D310"
    std::string decimalSeparator;   // stands in for every "," of the file
};

using TrackItem = std::variant<TrkHeader, Trace>;

// Empty the collection, then fill it from the file.

// Lines "W". True when at least one waypoint was gathered.
bool readWaypointFile(Host& host, std::string_view path, const UploadFormat& format,
                      std::vector<Waypoint>& waypoints);

// Lines "R", each followed by the "W" lines of its points. True when the file was read to its end,
// also without routes; a "W" line in front of every "R" line is an error.
bool readRouteFile(Host& host, std::string_view path, const UploadFormat& format,
                   std::vector<Route>& routes);

// Lines "N", each followed by the "T" lines of its points. Headers are gathered for Garmin track
// protocols that have them; the point that follows one starts a new segment. True when at least one
// header or point was gathered.
bool readTrackFile(Host& host, std::string_view path, const UploadFormat& format,
                   std::vector<TrackItem>& items);

}  // namespace marlune
