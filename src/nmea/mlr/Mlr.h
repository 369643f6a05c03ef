// The transfers of MLR receivers. Newer units send their tracks and waypoints as data blocks at a
// raised line speed, older ones as sentences; routes are sentences on both.
//
// A procedure returns when its transfer is over and reports through the host's events and boxes.
// All end early when the host requests a stop or a handler closes the port.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "family/ConnectionState.h"
#include "family/Upload.h"
#include "garmin/records/Route.h"
#include "garmin/records/Trace.h"
#include "garmin/records/Waypoint.h"
#include "host/Services.h"
#include "host/TransferLog.h"
#include "marlune/Records.h"
#include "nmea/NmeaState.h"
#include "nmea/RouteAssembly.h"
#include "nmea/SentenceReader.h"
#include "nmea/mlr/BlocMLR.h"
#include "nmea/mlr/MlrState.h"
#include "serial/ComPort.h"

namespace marlune {

class Mlr {
public:
    Mlr(Services& services, PortLease& port, ConnectionState& connection, NmeaState& nmea,
        MlrState& state);

    // Asks who the receiver is and fills the identity texts. True when it answered; then the
    // connection counts as connected.
    bool mlrIdent();

    // Downloads: true when something was there and came to its end.
    bool mlrGetWaypoints();
    bool mlrGetTracks();
    bool mlrGetRoutes();

    // Uploads. A record that cannot be written as a sentence raises RunTimeError, with no end
    // event.
    void mlrSendWaypoints(const Upload<Waypoint>& upload);
    void mlrSendRoutes(const Upload<Route>& upload);
    // These receivers take no tracks: tells the user so.
    void mlrSendTracks();

private:
    // A download in progress.
    struct List {
        const char* letter;
        const char* header;
        const char* nothingText;
        TransferLog& log;
        bool begun = false;
        std::int16_t item = 0;
    };
    // Sentences of a list, which are taken whether their checksum is right or not there at all. A
    // receiver sends one with all of them or with none.
    struct Checksums {
        int present = 0;
        int wrong = 0;
        int missing = 0;
    };
    using TakeText = std::function<void(const std::string& text)>;

    void send(std::string_view text);
    void acceptBlockReceiver(const std::string& reply);
    void acceptSentenceReceiver(const std::string& reply);
    void accept(double version, bool sendsBlocks);

    // Why it ended: a silence behind sentences is the end of the list.
    Ending listen(const TakeText& take, TransferLog& log);
    Ending takeSentences(const TakeText& take, Checksums& checksums);
    bool downloadBlocks(List& list, const char* request, std::size_t shortestRecord,
                        const TakeText& take);
    void takeBlock(const BlocMLR& block, int number, std::size_t shortestRecord,
                   const TakeText& take, TransferLog& log);
    void begin(List& list, std::int16_t count);
    bool finish(const List& list, Ending ending);

    bool decodeWaypoint(std::string_view sentence, Waypoint& waypoint, TransferLog& log);
    void reject(std::string_view sentence, TransferLog& log);
    void takeWaypoint(std::string_view sentence, List& list);
    void takeWaypointRecord(std::string_view record, List& list);
    void takeTrackPoint(std::string_view sentence, List& list);
    void takeTrackRecord(std::string_view record, std::uint16_t& previous, List& list);
    void reportPoint(Trace point, const TrackPointRecord& value, List& list);
    void takeRouteSentence(std::string_view sentence, std::vector<RoutePhrase>& phrases,
                           TransferLog& log);

    double today();
    [[nodiscard]] char separator() const { return services_.host.decimalSeparator(); }

    Services& services_;
    PortLease& port_;
    ConnectionState& connection_;
    MlrState& state_;
    SentenceReader reader_;
};

}  // namespace marlune
