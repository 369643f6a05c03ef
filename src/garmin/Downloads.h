// Downloads from a Garmin unit: one transfer command, the count of records, then each record
// acknowledged, kept, and handed to the host in an event.
//
// Waypoints, tracks and routes are one procedure over three rows of data; proximity waypoints
// differ in several ways on purpose and have their own.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "garmin/GarminProcedure.h"
#include "host/TransferLog.h"

namespace marlune {

class GarminDownloads : public GarminProcedure {
public:
    using GarminProcedure::GarminProcedure;

    bool getWaypts();
    bool getTracks();
    bool GetRoutes();
    bool getProximites();

private:
    using Bytes = std::span<const std::uint8_t>;
    // Decodes a record, keeps it and raises its event. False for one that is none.
    using Take = bool (GarminDownloads::*)(std::int16_t numitem, Bytes data);

    struct RecordRule {
        std::uint8_t pid;
        Take take;
    };
    struct Kind;
    static const Kind kWaypoints;
    static const Kind kTracks;
    static const Kind kRoutes;

    bool download(const Kind& kind);
    // The packet that counts the records; another one when none came.
    LinkPacket receiveCount();
    std::int16_t acceptCount(const LinkPacket& packet, TransferLog& log);
    Ending receiveRecords(const Kind& kind, std::int16_t count, TransferLog& log);
    bool outlastsSilence(const Kind& kind);
    void takeRecord(const Kind& kind, std::int16_t numitem, const LinkPacket& packet,
                    TransferLog& log);
    void takeRecordBy(const RecordRule& rule, std::int16_t numitem, const LinkPacket& packet,
                      TransferLog& log);
    Ending receiveProximities(std::int16_t count, LinkPacket& last, TransferLog& log);

    // Returns the line of what it kept.
    std::string keepWaypoint(std::vector<WaypointRecord>& kept, Bytes data);
    bool takeWaypoint(std::int16_t numitem, Bytes data);
    bool takeTrackPoint(std::int16_t numitem, Bytes data);
    bool takeTrackHeader(std::int16_t numitem, Bytes data);
    bool takeRouteHeader(std::int16_t numitem, Bytes data);
    bool takeRoutePoint(std::int16_t numitem, Bytes data);
    bool takeRouteLink(std::int16_t numitem, Bytes data);
    bool takeProximity(std::int16_t numitem, Bytes data);

    std::uint8_t routeCounter_ = 0;
};

}  // namespace marlune
