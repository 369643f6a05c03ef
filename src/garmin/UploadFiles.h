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

#include <string_view>
#include <vector>

#include "family/Upload.h"
#include "family/UploadFormat.h"
#include "garmin/records/Route.h"
#include "garmin/records/TrackItem.h"
#include "garmin/records/Waypoint.h"
#include "marlune/Host.h"

namespace marlune {

// The type that decides what the idents of waypoints and of route points keep.
[[nodiscard]] std::string_view waypointType(const UploadFormat& format);
[[nodiscard]] std::string_view routePointType(const UploadFormat& format);
// Whether the headers of tracks are sent.
[[nodiscard]] bool keepsTrackHeaders(const UploadFormat& format);

// Empty the collection, then fill it from the file.

// Lines "W". Good when at least one waypoint was gathered.
FileReading readWaypointFile(Host& host, std::string_view path, const UploadFormat& format,
                             std::vector<Waypoint>& waypoints);

// Lines "R", each followed by the "W" lines of its points. Good when the file was read to its end,
// also without routes; a "W" line in front of every "R" line is an error.
FileReading readRouteFile(Host& host, std::string_view path, const UploadFormat& format,
                          std::vector<Route>& routes);

// Lines "N", each followed by the "T" lines of its points. Headers are gathered for Garmin track
// protocols that have them; the point that follows one starts a new segment. Good when at least one
// header or point was gathered.
FileReading readTrackFile(Host& host, std::string_view path, const UploadFormat& format,
                          std::vector<TrackItem>& items);

}  // namespace marlune
