// Uploads to a Garmin unit: the count of records, each record as soon as the one before it was
// acknowledged, transfer complete. Every record's event is raised just before it is sent.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "garmin/GarminState.h"
#include "garmin/link/GarminLink.h"
#include "host/Services.h"

namespace marlune {

class GarminUploads {
public:
    // The collections of `garmin` are what is sent.
    GarminUploads(Services& services, GarminLink& link, GarminState& garmin)
        : services_(services), link_(link), garmin_(garmin) {}

    // Run-time errors leave to the caller, which shows them; nothing more is sent then. More than
    // 32767 records are the overflow error, before anything is sent. A track point that cannot be
    // encoded ends the sending in the ordinary way instead.
    bool SendWaypts();
    bool SendRoutes();
    bool SendTraces();

private:
    using Bytes = std::vector<std::uint8_t>;

    bool announce(const std::string& letter, std::size_t count, const char* label);
    // Ends an upload; its result is the member's.
    bool finish(const std::string& letter, std::span<const std::uint8_t> payload, bool allSent);
    // Sends a packet and answers with what acknowledges it; on a link without acknowledgements,
    // with an acknowledgement when the packet was taken, else with id 0.
    LinkPacket sendPacket(std::uint8_t pid, std::span<const std::uint8_t> data);
    bool sendWaypoint(std::int16_t numitem, Waypoint waypoint);
    bool sendRoute(Route route);
    bool sendRoutePoint(Waypoint& point, int pointsLeft);
    bool sendRouteLink(const Waypoint& point);
    bool sendTrackItem(std::int16_t numitem, TrackItem item);
    bool sendTrackHeader(std::int16_t numitem, TrkHeader& header);
    bool sendTrackPoint(std::int16_t numitem, Trace& point);
    bool sendRecord(std::uint8_t pid, const Bytes& record);
    [[nodiscard]] std::size_t routeRecords() const;

    [[nodiscard]] bool mayGoOn() const { return link_.holds() && !services_.host.stopRequested(); }
    [[nodiscard]] char separator() const { return services_.host.decimalSeparator(); }

    Services& services_;
    GarminLink& link_;
    GarminState& garmin_;
    std::int16_t routeItem_ = 0;
};

}  // namespace marlune
