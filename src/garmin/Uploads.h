// Uploads to a Garmin unit: the count of records, each record as soon as the one before it was
// acknowledged, transfer complete. Every record's event is raised just before it is sent.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "family/Upload.h"
#include "garmin/GarminProcedure.h"
#include "garmin/records/Route.h"
#include "garmin/records/TrackItem.h"
#include "garmin/records/Waypoint.h"

namespace marlune {

class GarminUploads : public GarminProcedure {
public:
    using GarminProcedure::GarminProcedure;

    // Run-time errors leave to the caller, which shows them; nothing more is sent then. More than
    // 32767 records are the overflow error, before anything is sent. A track point that cannot be
    // encoded ends the sending in the ordinary way instead.
    bool SendWaypts(const Upload<Waypoint>& upload);
    bool SendRoutes(const Upload<Route>& upload);
    bool SendTraces(const Upload<TrackItem>& upload);

private:
    using Bytes = std::vector<std::uint8_t>;

    // False as well when the link is known to be gone: nobody hears what is sent then.
    [[nodiscard]] bool maySend() const { return mayGoOn() && !link_.isGone(); }
    // True when the unit did not decline; otherwise the report is ended.
    bool announce(const char* letter, std::size_t count, const char* label, TransferLog& log);
    // Ends an upload; its result is the member's.
    bool finish(const char* letter, std::span<const std::uint8_t> payload, Ending ending,
                TransferLog& log);
    // Sends a packet and answers with what acknowledges it; on a link without acknowledgements,
    // with an acknowledgement when the packet was taken, else with id 0.
    LinkPacket sendPacket(std::uint8_t pid, std::span<const std::uint8_t> data);

    // One record each, or what a route consists of. Complete when the upload may go on.
    Ending sendWaypoint(std::int16_t numitem, const Waypoint& waypoint, TransferLog& log);
    Ending sendRoute(const Route& route, TransferLog& log);
    Ending sendRoutePoint(const Waypoint& point, bool linked, TransferLog& log);
    Ending sendRouteLink(const Waypoint& point, TransferLog& log);
    Ending sendTrackItem(std::int16_t numitem, const TrackItem& item, TransferLog& log);
    Ending sendTrackHeader(std::int16_t numitem, const TrkHeader& header, TransferLog& log);
    Ending sendTrackPoint(std::int16_t numitem, const Trace& point, TransferLog& log);
    Ending sendRecord(std::uint8_t pid, const Bytes& record, TransferLog& log);
    // Counts a record that went, as the answer to it says.
    Ending went(const LinkPacket& reply, TransferLog& log) const;
    [[nodiscard]] std::size_t routeRecords(const std::vector<Route>& routes) const;

    std::int16_t routeItem_ = 0;
};

}  // namespace marlune
