// A receiver that streams sentences from the moment it is switched on and does not listen: at each
// fix GGA, RMC, GSA and GLL, and with them, one at a time and over and over, the waypoints and
// routes that it holds ($GPWPL, $GPRTE). Instead of all that it can play sentences from a file, one
// at each fix's time, over and over.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "receivers/nmea/SentenceReceiver.h"

namespace marlune::receivers::nmea {

class NmeaReceiver : public SentenceReceiver {
public:
    // played: whole sentences to play; none for a walk.
    explicit NmeaReceiver(Settings settings, std::vector<std::string> played = {});

private:
    void onSentence(const HeardSentence& /*heard*/, double /*now*/) override {}
    void onWake(double now) override;
    void sayFix(double now);

    std::vector<std::string> played_;
    std::vector<std::string> list_;  // of waypoints and routes
    std::size_t nextPlayed_ = 0;
    std::size_t nextOfList_ = 0;
    double tick_;
};

// The sentences of a text: its lines that begin with "$". Those without a checksum get theirs.
std::vector<std::string> sentencesOf(std::string_view text);

std::vector<Unit> nmeaUnits();
// As chosen by the options; a data file may hold text lines or sentences. Throws
// std::invalid_argument.
std::unique_ptr<VirtualReceiver> makeNmeaReceiver(const ReceiverOptions& options);

}  // namespace marlune::receivers::nmea
