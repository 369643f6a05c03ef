// Records as the values of the public interface (marlune/Records.h).
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "garmin/records/PvtData.h"
#include "garmin/records/Route.h"
#include "garmin/records/RteLink.h"
#include "garmin/records/Trace.h"
#include "garmin/records/TrkHeader.h"
#include "garmin/records/Waypoint.h"
#include "marlune/Records.h"

namespace marlune {

// Of a decoded Garmin record: the record's bytes tell, in its data type, what the decoded form has
// no place for, and whether a 0 is a number or stands for what is unknown. The record must have
// been decoded in that type without an error.
WaypointRecord recordOf(Waypoint waypoint, std::string_view format,
                        std::span<const std::uint8_t> data);
TrackPointRecord recordOf(const Trace& point, std::string_view format,
                          std::span<const std::uint8_t> data);
TrackRecord recordOf(const TrkHeader& header, std::string_view format);

// The alarm distance behind the waypoint in a proximity record of that type; nothing for one that
// is a waypoint's own type, or whose waypoint does not come first.
std::optional<float> alarmDistance(std::string_view proximityType,
                                   std::span<const std::uint8_t> data);

// Of what was read from a sentence or from an upload file's line, where the fields are all there
// is.
WaypointRecord recordOf(Waypoint waypoint);
TrackPointRecord recordOf(const Trace& point);

// Header only; the points join by events of their own.
RouteRecord recordOf(const Route& route);
RouteLinkRecord recordOf(const RteLink& link);
// Of a fix that has its point, from a D800 record.
FixRecord recordOf(const PvtData& fix);

// A date value (days since 30/12/1899, UTC) as seconds since 1970-01-01.
double unixTime(double date);

// Appending, where points may come without a header in front of them.
void addPoint(Records& records, TrackPointRecord point);
void addPoint(Records& records, WaypointRecord routePoint);
// Joins the route's last point; without one it is dropped.
void addLink(Records& records, RouteLinkRecord link);

}  // namespace marlune
