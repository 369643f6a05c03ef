// What a receiver keeps of the records that are sent to it, told without sending any: each goes
// through its text line and the codec of the receiver's own types, and back.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "family/UploadFormat.h"
#include "garmin/GpsCapability.h"
#include "garmin/records/Waypoint.h"
#include "marlune/Gpx.h"
#include "marlune/Records.h"

namespace marlune {

class Rehearsal {
public:
    // Of the connected receiver: ConnectionReport::protocolCode, and what getProtocoles gives.
    Rehearsal(std::string protocolCode, const std::string& protocols);

    // Whether the receiver takes records of that kind at all.
    [[nodiscard]] bool takes(GpxKind kind) const;

    // As the receiver will hold it; nothing for a record that cannot be sent.
    [[nodiscard]] std::optional<WaypointRecord> waypoint(const WaypointRecord& record) const;
    // Without links: those are the receiver's own.
    [[nodiscard]] std::optional<RouteRecord> route(const RouteRecord& record) const;
    [[nodiscard]] std::optional<TrackRecord> track(const TrackRecord& record) const;

private:
    [[nodiscard]] WaypointRecord coded(const Waypoint& waypoint, const std::string& type) const;
    [[nodiscard]] std::optional<WaypointRecord> point(const WaypointRecord& record,
                                                      std::string_view readFor,
                                                      const std::string& type) const;
    [[nodiscard]] std::string coded(const std::string& routeLine) const;
    [[nodiscard]] TrackRecord codedHead(const TrackRecord& record) const;
    [[nodiscard]] TrackPointRecord codedPoint(const std::string& line, std::string& name) const;

    enum class Codec { garmin, drive, magellan, mlr, none };

    Codec codec_;
    GpsCapability capability_;
    UploadFormat format_;
};

// What differs between a record and what a receiver keeps of it. Positions are not compared.
struct Losses {
    bool name = false;
    bool comment = false;
    bool symbol = false;
    bool altitude = false;
    bool time = false;
    bool more = false;  // depth, temperature, alarm distance

    [[nodiscard]] bool any() const { return name || comment || symbol || altitude || time || more; }
    Losses& operator|=(const Losses& other);
};

Losses lossesOf(const WaypointRecord& record, const WaypointRecord& kept);
// Of the route and any of its points.
Losses lossesOf(const RouteRecord& record, const RouteRecord& kept);
Losses lossesOf(const TrackRecord& record, const TrackRecord& kept);

}  // namespace marlune
