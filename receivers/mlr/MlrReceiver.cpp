#include "receivers/mlr/MlrReceiver.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "receivers/mlr/Blocks.h"
#include "receivers/mlr/MlrSentences.h"
#include "receivers/nmea/RouteSentences.h"
#include "receivers/nmea/SentenceText.h"

namespace marlune::receivers::mlr {
namespace {

constexpr int kFast = 38400;        // bits per second
constexpr double kSpeedChange = 1;  // seconds until the first block
constexpr double kFirstKey = 2;     // seconds from an exchange to the user's key
constexpr double kNextKey = 8;      // seconds between two sendings

struct MlrUnit {
    const char* name;
    const char* description;
    MlrKind kind;
};
constexpr MlrUnit kUnits[] = {
    {"sp24", "sends data blocks", MlrKind::blocks},
    {"valsat", "sends sentences", MlrKind::sentences},
};

}  // namespace

MlrReceiver::MlrReceiver(Settings settings, MlrKind kind)
    : SentenceReceiver(std::move(settings), kNameWidth), kind_(kind) {}

void MlrReceiver::onSentence(const nmea::HeardSentence& heard, double now) {
    if (!blocks_.empty()) {
        return;
    }
    if (heard.name() != "PMLR") {
        onUpload(heard);
    } else if (isChecked(heard.text())) {
        onCommand(heard, now);
    } else {
        complain("wrong check field: " + nmea::heldText(heard.text()));
    }
}

void MlrReceiver::onCommand(const nmea::HeardSentence& heard, double now) {
    fallSilent();
    memory().endUpload();
    const std::string_view number = heard.field(1);
    const std::string_view parameter = heard.field(3);
    const bool sendsBlocks = kind_ == MlrKind::blocks;
    if (number == "06") {
        wakeAt(now + kFirstKey);
    } else if (refuses(number)) {
        return;
    } else if (number == "26" && sendsBlocks) {
        saySentence(command("$PMLR,IDGPS,01,MLR,FR,00,3.10,SP24 XC,"));
    } else if (number == "0E" && !sendsBlocks) {
        saySentence(nmea::sentence("INFOS,VALSAT 2.10 02/1999"));
    } else if (number == "24" && parameter == "0101" && sendsBlocks) {
        prepareBlocks(trackBlocks(memory().tracks()), now);
    } else if (number == "24" && parameter == "0301" && sendsBlocks) {
        prepareBlocks(placeBlocks(memory().places()), now);
    } else if (number != "26" && number != "0E") {
        complain("unknown command: " + nmea::heldText(heard.text()));
    }
}

void MlrReceiver::prepareBlocks(std::vector<std::string> blocks, double now) {
    blocks_ = std::move(blocks);
    setBaud(kFast);
    wakeAt(now + kSpeedChange);
}

void MlrReceiver::onWake(double now) {
    if (!blocks_.empty()) {
        sayAll(blocks_, "BLOC");
        return;
    }
    const std::vector<std::string> list = sentenceList();
    sayAll(list);
    if (list.empty()) {
        wakeAt(now + kNextKey);
    }
}

void MlrReceiver::onAllSaid(double now) {
    if (blocks_.empty()) {
        wakeAt(now + kNextKey);
        return;
    }
    blocks_.clear();
    setBaud(settings().baud);
}

std::vector<std::string> MlrReceiver::sentenceList() {
    std::vector<std::string> list;
    for (const Place& place : memory().places()) {
        list.push_back(placeSentence(place));
    }
    int number = 0;
    for (const Track& track : memory().tracks()) {
        for (const TrackPoint& point : track.points) {
            if (kind_ == MlrKind::sentences && number < kMostNumbered) {
                list.push_back(pointSentence(point, ++number));
            }
        }
    }
    for (const Route& route : memory().routes()) {
        const std::vector<std::string> sentences = nmea::routeSentences(nmea::kPlainRoutes, route);
        list.insert(list.end(), sentences.begin(), sentences.end());
    }
    return list;
}

void MlrReceiver::onUpload(const nmea::HeardSentence& heard) {
    if (!heard.intact()) {
        complain("wrong checksum: " + nmea::heldText(heard.text()));
    } else if (!refuses(heard.name()) && !store(heard)) {
        complain("not taken: " + nmea::heldText(heard.text()));
    }
}

bool MlrReceiver::store(const nmea::HeardSentence& heard) {
    if (heard.name() == "GPWPL") {
        std::optional<Place> place = readPlace(heard);
        return place && memory().store(std::move(*place));
    }
    if (heard.name() == "GPRTE") {
        const std::optional<nmea::RoutePart> part = nmea::readRoute(nmea::kPlainRoutes, heard);
        return part && memory().store(*part);
    }
    return false;
}

std::vector<Unit> mlrUnits() {
    std::vector<Unit> all;
    for (const MlrUnit& each : kUnits) {
        all.push_back({each.name, each.description});
    }
    return all;
}

std::unique_ptr<VirtualReceiver> makeMlrReceiver(const ReceiverOptions& options) {
    const auto* const unit = std::find_if(
        std::begin(kUnits), std::end(kUnits),
        [&](const MlrUnit& each) { return options.unit.empty() || each.name == options.unit; });
    if (unit == std::end(kUnits)) {
        throw std::invalid_argument("the family mlr has no unit \"" + options.unit + "\"");
    }
    return std::make_unique<MlrReceiver>(nmea::sentenceSettings(options), unit->kind);
}

}  // namespace marlune::receivers::mlr
