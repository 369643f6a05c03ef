// A Magellan unit.
//
// Every sentence must carry the right checksum; others are not heard. Commands
// ("$PMGNCMD,WAYPOINT*71"):
//
//   VERSION           says "$PMGNVER": product id, version, description
//   WAYPOINT          says the waypoints
//   TRACK,2  TRACK    says the tracks' points, with the tracks' names and the days, or without
//   ROUTE             says the routes; their points are waypoints of the list above
//   FIX               says a "$GPGGA" at once and then at its rate, until it is told something else
//   STOP              stops saying whatever it says
//   HANDON  HANDOFF   at first it acknowledges every sentence of an upload ("$PMGNCSM" with that
//                     sentence's checksum); after HANDON every command too, before it answers;
//                     after HANDOFF nothing
//   END               ends an upload
//
// A list ends with "$PMGNCMD,END". What it does not hold, know or understand it refuses
// ("$PMGNCMD,UNABLE"). It waits for nothing between the sentences of a list, and sends none again.
//
// Uploads are waypoints, track points and routes ($PMGNWPL, $PMGNTRK, $PMGNRTE). A waypoint takes
// the place of the one of that name, a route that of its number, the track of an upload that of its
// name.
//
// A fault's label is a sentence's name, for commands in either direction the command's word
// ("WAYPOINT", "END", "UNABLE").
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "receivers/nmea/SentenceReceiver.h"

namespace marlune::receivers::magellan {

struct MagellanUnit {
    std::string name;
    std::string productId;
    std::string version;
    std::string description;
};

class MagellanReceiver : public nmea::SentenceReceiver {
public:
    MagellanReceiver(Settings settings, MagellanUnit unit);

private:
    void onSentence(const nmea::HeardSentence& heard, double now) override;
    void onWake(double now) override;

    void onCommand(const nmea::HeardSentence& heard, double now);
    void sayVersion();
    void sayList(std::vector<std::string> sentences);
    void sayFixes(double now);
    void onUpload(const nmea::HeardSentence& heard);
    bool store(const nmea::HeardSentence& heard);
    [[nodiscard]] bool acknowledges(std::string_view word) const;
    void acknowledge(const nmea::HeardSentence& heard);
    void refuse(const std::string& what);
    void sayCommand(const std::string& word);

    [[nodiscard]] std::vector<std::string> placeList();
    [[nodiscard]] std::vector<std::string> trackList(bool complete);
    [[nodiscard]] std::vector<std::string> routeList();

    MagellanUnit unit_;
    // What it acknowledges.
    enum class Handshake { nothing, uploads, everything };
    Handshake handshake_ = Handshake::uploads;
    double tick_ = 0;  // when the last fix was due
};

std::vector<Unit> magellanUnits();
// As chosen by the options. Throws std::invalid_argument.
std::unique_ptr<VirtualReceiver> makeMagellanReceiver(const ReceiverOptions& options);

}  // namespace marlune::receivers::magellan
