// MLR receivers: block receivers, which identify themselves with "$PMLR,IDGPS" and send waypoints
// and tracks as data blocks when they are asked, and sentence receivers, which answer "$INFOS" and
// send nothing but sentences, when their user tells them to.
//
// Commands must end with the right check field; others are not heard.
//
//   26  says "$PMLR,IDGPS" (block receivers)
//   0E  says "$INFOS" (sentence receivers)
//   24  block receivers: parameter 0101 asks for the tracks, 0301 for the waypoints. The unit goes
//       to 38400 bits per second, waits a second for the other end to follow, says the blocks,
//       and returns to its own speed with the last byte of the closing block. It hears nothing
//       meanwhile
//   06  ends an exchange
//
// The user presses the key that sends sentences two seconds after an exchange has ended, and again
// eight seconds after each sending: waypoints ($GPWPL), track points (sentence receivers only) and
// routes ($GPRTE). A command stops that.
//
// Waypoints and routes that are sent to it are stored at any time; it answers nothing. It refuses
// by silence.
//
// A fault's label is a sentence's name, a command's number ("24"), "IDGPS", "INFOS", or "BLOC" for
// every block.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "receivers/nmea/SentenceReceiver.h"

namespace marlune::receivers::mlr {

enum class MlrKind { blocks, sentences };

class MlrReceiver : public nmea::SentenceReceiver {
public:
    MlrReceiver(Settings settings, MlrKind kind);

private:
    void onSentence(const nmea::HeardSentence& heard, double now) override;
    void onWake(double now) override;
    void onAllSaid(double now) override;

    void onCommand(const nmea::HeardSentence& heard, double now);
    void prepareBlocks(std::vector<std::string> blocks, double now);
    void onUpload(const nmea::HeardSentence& heard);
    bool store(const nmea::HeardSentence& heard);
    [[nodiscard]] std::vector<std::string> sentenceList();

    MlrKind kind_;
    std::vector<std::string> blocks_;  // those that are sent, or about to be
};

std::vector<Unit> mlrUnits();
// As chosen by the options. Throws std::invalid_argument.
std::unique_ptr<VirtualReceiver> makeMlrReceiver(const ReceiverOptions& options);

}  // namespace marlune::receivers::mlr
