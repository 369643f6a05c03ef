// The transfers of Magellan receivers: commands "$PMGNCMD,..." one way, data sentences
// "$PMGNWPL", "$PMGNTRK" and "$PMGNRTE" the other, "$PMGNCMD,END" or "$PMGNCMD,UNABLE" at the end.
//
// A procedure returns when its transfer is over and reports through the host's events and boxes.
// Downloads end early, with their end event, when the host requests a stop or a handler closes the
// port; the receiver is told to stop where it can still be reached.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "family/ConnectionState.h"
#include "family/Upload.h"
#include "garmin/records/PvtData.h"
#include "garmin/records/Route.h"
#include "garmin/records/TrackItem.h"
#include "garmin/records/Waypoint.h"
#include "host/Services.h"
#include "nmea/NmeaState.h"
#include "nmea/Sentence.h"
#include "nmea/SentenceReader.h"
#include "nmea/magellan/MagellanState.h"
#include "serial/ComPort.h"

namespace marlune {

class RouteAssembly;

class Magellan {
public:
    Magellan(Services& services, PortLease& port, ConnectionState& connection, NmeaState& nmea,
             MagellanState& state);

    // Asks who the receiver is and fills the identity texts. True when it answered; then the
    // connection counts as connected.
    bool mgnVersion();

    // Downloads: true when the receiver ended its list itself.
    bool mgnGetWaypoints();
    bool mgnGetTracks();
    // Needs the waypoints of an earlier download; without them the user is told and nothing is
    // sent.
    bool mgnGetRoutes();

    // Uploads. A record that cannot be written as a sentence raises RunTimeError out of the first
    // two, with no end event; it ends the sending of tracks.
    void mgnSendWaypoints(const Upload<Waypoint>& upload);
    void mgnSendRoutes(const Upload<Route>& upload);
    void mgnSendTracks(const Upload<TrackItem>& upload);

    // Follows the receiver's position until ConnectionState::realTimeRunning is cleared. A silent
    // receiver does not end it.
    void mgnPvt();

    // Silences a receiver that still sends a list.
    void mgnStop();

private:
    using TakeSentence = std::function<void(const std::string& sentence)>;
    struct TrackProgress {
        int received = 0;  // sentences, dropped ones too
        bool any = false;  // a point was delivered
        std::string name;  // of the track in progress
    };

    bool send(std::string_view sentence);
    std::string readVersionReply();
    void waitOneSecond();

    Ending readList(std::string_view prefix, const TakeSentence& take, TransferLog& log);
    Ending readSentences(std::string_view prefix, const TakeSentence& take, TransferLog& log);
    bool accepts(std::string_view sentence, std::string_view checksum, TransferLog& log);
    // True when the receiver ended its list itself.
    static bool endList(Ending ending, TransferLog& log);
    void reject(std::string_view sentence);
    void takeWaypoint(const std::string& sentence, int received, TransferLog& log);
    void takeTrackPoint(const std::string& sentence, TrackProgress& progress, TransferLog& log);
    void beginTrack(const Trace& point, TrackProgress& progress, TransferLog& log);
    void takeRouteSentence(const std::string& sentence, RouteAssembly& routes, TransferLog& log);
    void endDownload(const char* letter);

    Ending sendTrackPoints(const std::vector<TrackItem>& items, TransferLog& log);

    std::string waitForFix(bool& refused);
    void followPosition(TransferLog& log);
    FixRecord recordOfFix(const PvtData& fix, const Sentence& sentence);

    [[nodiscard]] char separator() const { return services_.host.decimalSeparator(); }

    Services& services_;
    PortLease& port_;
    ConnectionState& connection_;
    MagellanState& state_;
    SentenceReader reader_;
};

}  // namespace marlune
