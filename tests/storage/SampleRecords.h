// Records with everything that records can hold.
#pragma once

#include "marlune/RecordFiles.h"

namespace marlune {

inline Records sampleRecords() {
    Records all;
    WaypointRecord summit;
    summit.name = "SUMMIT & <\xC3\x89>";
    summit.comment = "a; \"b\", c";
    summit.latitude = 45.832621960000001;
    summit.longitude = -179.99999991618097;
    summit.altitude = 4805.6F;
    summit.depth = 1.5F;
    summit.temperature = -0.25F;
    summit.proximity = 150;
    summit.time = 1168864496;
    summit.symbol = 178;
    summit.display = 2;
    WaypointRecord sea;
    sea.name = "SEA";
    sea.latitude = -0.1;
    sea.altitude = 0.0F;
    sea.symbol = 7690;
    sea.display = 0;
    WaypointRecord strange;
    strange.name = "NUMBER ONLY";
    strange.symbol = 20;
    WaypointRecord bare;
    bare.latitude = 90;
    all.waypoints = {summit, sea, strange, bare};

    RouteLinkRecord link;
    link.linkClass = 255;
    link.subclass[8] = 0xFE;
    link.name = "THE LINK";
    all.routes = {{0, "NUMBER 0", {{summit, link}, {sea, std::nullopt}}}, {7, "", {}}};

    TrackRecord named;
    named.name = "WALK";
    named.display = false;
    named.colour = 255;
    TrackPointRecord point;
    point.latitude = 1;
    point.longitude = 2;
    point.time = 631195200.5;
    point.altitude = -3.25F;
    point.segmentStart = true;
    TrackPointRecord wet = point;
    wet.segmentStart = false;
    wet.depth = 12.5F;
    wet.temperature = 4;
    TrackPointRecord lonely;
    lonely.latitude = 3;
    lonely.segmentStart = true;
    named.points = {point, wet, lonely};
    all.tracks = {named, {}};
    return all;
}

}  // namespace marlune
