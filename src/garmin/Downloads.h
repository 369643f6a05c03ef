// Downloads from a Garmin unit: one transfer command, the count of records, then each record
// acknowledged, kept, and handed to the host in an event.
//
// Waypoints, tracks and routes are one procedure over three rows of data; proximity waypoints
// differ in several ways on purpose and have their own.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "family/ConnectionState.h"
#include "garmin/GarminState.h"
#include "garmin/link/GarminLink.h"
#include "host/Services.h"

namespace marlune {

class GarminDownloads {
public:
    GarminDownloads(Services& services, GarminLink& link, ConnectionState& state,
                    GarminState& garmin)
        : services_(services), link_(link), state_(state), garmin_(garmin) {}

    bool getWaypts();
    bool getTracks();
    bool GetRoutes();
    bool getProximites();

private:
    using Bytes = std::span<const std::uint8_t>;
    // Decodes a record, keeps it and raises its event.
    using Take = void (GarminDownloads::*)(std::int16_t numitem, Bytes data);

    struct RecordRule {
        std::uint8_t pid;
        Take take;
    };
    struct Kind;
    static const Kind kWaypoints;
    static const Kind kTracks;
    static const Kind kRoutes;

    bool download(const Kind& kind);
    std::optional<std::int16_t> receiveCount();
    std::int16_t acceptCount(const LinkPacket& packet);
    // True when the transfer-complete packet came.
    bool receiveRecords(const Kind& kind, std::int16_t count);
    bool outlastsSilence(const Kind& kind);
    void takeRecord(const Kind& kind, std::int16_t numitem, const LinkPacket& packet);
    void takeRecordBy(const RecordRule& rule, std::int16_t numitem, const LinkPacket& packet);
    bool receiveProximities(std::int16_t count, LinkPacket& last);

    // Returns the line of what it kept.
    std::string keepWaypoint(std::vector<Waypoint>& kept, Bytes data);
    void takeWaypoint(std::int16_t numitem, Bytes data);
    void takeTrackPoint(std::int16_t numitem, Bytes data);
    void takeTrackHeader(std::int16_t numitem, Bytes data);
    void takeRouteHeader(std::int16_t numitem, Bytes data);
    void takeRoutePoint(std::int16_t numitem, Bytes data);
    void takeRouteLink(std::int16_t numitem, Bytes data);
    void takeProximity(std::int16_t numitem, Bytes data);

    [[nodiscard]] bool mayGoOn() const { return link_.holds() && !services_.host.stopRequested(); }
    [[nodiscard]] char separator() const { return services_.host.decimalSeparator(); }

    Services& services_;
    GarminLink& link_;
    ConnectionState& state_;
    GarminState& garmin_;
    std::uint8_t routeCounter_ = 0;
};

}  // namespace marlune
