#include "receivers/magellan/MagellanReceiver.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "receivers/magellan/MagellanSentences.h"
#include "receivers/nmea/SentenceText.h"

namespace marlune::receivers::magellan {
namespace {

constexpr std::size_t kLongestName = 30;
constexpr std::string_view kCommand = "PMGNCMD";

const std::vector<MagellanUnit>& units() {
    static const std::vector<MagellanUnit> kUnits = {
        {"gps315", "024", "3.15", "GPS 315"},
        {"map330", "030", "4.02", "MAP 330"},
    };
    return kUnits;
}

MagellanUnit chooseUnit(const ReceiverOptions& options) {
    const std::vector<MagellanUnit>& all = units();
    const auto found = std::find_if(all.begin(), all.end(), [&](const MagellanUnit& each) {
        return options.unit.empty() || each.name == options.unit;
    });
    if (found == all.end()) {
        throw std::invalid_argument("the family magellan has no unit \"" + options.unit + "\"");
    }
    MagellanUnit unit = *found;
    if (options.productId) {
        unit.productId = nmea::padded(*options.productId, 3);
        unit.description = "Unit " + std::to_string(*options.productId);
    }
    if (options.version) {
        unit.version =
            nmea::padded(*options.version / 100, 1) + '.' + nmea::padded(*options.version % 100, 2);
    }
    return unit;
}

}  // namespace

MagellanReceiver::MagellanReceiver(Settings settings, MagellanUnit unit)
    : SentenceReceiver(std::move(settings), kLongestName), unit_(std::move(unit)) {}

void MagellanReceiver::onSentence(const nmea::HeardSentence& heard, double now) {
    if (!heard.intact()) {
        complain("wrong checksum: " + nmea::heldText(heard.text()));
    } else if (heard.name() == kCommand) {
        onCommand(heard, now);
    } else if (heard.name() != "PMGNCSM") {
        onUpload(heard);
    }
}

void MagellanReceiver::onCommand(const nmea::HeardSentence& heard, double now) {
    const std::string_view word = heard.field(1);
    if (acknowledges(word)) {
        acknowledge(heard);
    }
    if (word == "STOP") {
        fallSilent();
        return;
    }
    if (word == "HANDON" || word == "HANDOFF") {
        handshake_ = word == "HANDON" ? Handshake::everything : Handshake::nothing;
        return;
    }
    if (word == "END") {
        memory().endUpload();
        return;
    }
    fallSilent();
    if (refuses(word)) {
        sayCommand("UNABLE");
    } else if (word == "VERSION") {
        sayVersion();
    } else if (word == "WAYPOINT") {
        sayList(placeList());
    } else if (word == "TRACK") {
        sayList(trackList(heard.field(2) == "2"));
    } else if (word == "ROUTE") {
        sayList(routeList());
    } else if (word == "FIX" && settings().hasFix) {
        sayFixes(now);
    } else {
        refuse(word == "FIX" ? "" : "unknown command: " + nmea::heldText(heard.text()));
    }
}

void MagellanReceiver::sayVersion() {
    saySentence(nmea::sentence("PMGNVER," + unit_.productId + ',' + unit_.version + ',' +
                               nmea::wireText(unit_.description)));
}

void MagellanReceiver::sayList(std::vector<std::string> sentences) {
    if (sentences.empty()) {
        refuse("");
        return;
    }
    sentences.push_back(nmea::sentence("PMGNCMD,END"));
    sayAll(sentences);
}

std::vector<std::string> MagellanReceiver::placeList() {
    std::vector<std::string> list;
    for (const Place& place : memory().places()) {
        list.push_back(placeSentence(place));
    }
    return list;
}

std::vector<std::string> MagellanReceiver::trackList(bool complete) {
    std::vector<std::string> list;
    for (const Track& track : memory().tracks()) {
        for (const TrackPoint& point : track.points) {
            list.push_back(complete ? pointSentence(point, track.name) : shortPointSentence(point));
        }
    }
    return list;
}

std::vector<std::string> MagellanReceiver::routeList() {
    std::vector<std::string> list;
    for (const Route& route : memory().routes()) {
        const std::vector<std::string> sentences = nmea::routeSentences(kRoutes, route);
        list.insert(list.end(), sentences.begin(), sentences.end());
    }
    return list;
}

void MagellanReceiver::sayFixes(double now) {
    tick_ = now;
    onWake(now);
}

void MagellanReceiver::onWake(double now) {
    saySentence(nmea::ggaSentence(fixAt(now)));
    tick_ = nmea::nextOfStream(tick_, period(), now);
    wakeAt(tick_);
}

void MagellanReceiver::onUpload(const nmea::HeardSentence& heard) {
    if (refuses(heard.name())) {
        refuse("");
    } else if (!store(heard)) {
        refuse("not taken: " + nmea::heldText(heard.text()));
    } else if (handshake_ != Handshake::nothing) {
        acknowledge(heard);
    }
}

bool MagellanReceiver::store(const nmea::HeardSentence& heard) {
    if (heard.name() == "PMGNWPL") {
        std::optional<Place> place = readPlace(heard);
        return place && memory().store(std::move(*place));
    }
    if (heard.name() == "PMGNTRK") {
        const std::optional<HeardPoint> point = readPoint(heard);
        return point && memory().store(point->track, point->point);
    }
    if (heard.name() == "PMGNRTE") {
        const std::optional<nmea::RoutePart> part = nmea::readRoute(kRoutes, heard);
        return part && memory().store(*part);
    }
    return false;
}

// The end of an upload belongs to the upload.
bool MagellanReceiver::acknowledges(std::string_view word) const {
    return handshake_ == Handshake::everything ||
           (handshake_ == Handshake::uploads && word == "END");
}

void MagellanReceiver::acknowledge(const nmea::HeardSentence& heard) {
    saySentence(nmea::sentence("PMGNCSM," + std::string(heard.digits())));
}

void MagellanReceiver::refuse(const std::string& complaint) {
    if (!complaint.empty()) {
        complain(complaint);
    }
    sayCommand("UNABLE");
}

void MagellanReceiver::sayCommand(const std::string& word) {
    saySentence(nmea::sentence("PMGNCMD," + word));
}

std::vector<Unit> magellanUnits() {
    std::vector<Unit> all;
    for (const MagellanUnit& each : units()) {
        all.push_back({each.name, each.description + ", version " + each.version});
    }
    return all;
}

std::unique_ptr<VirtualReceiver> makeMagellanReceiver(const ReceiverOptions& options) {
    return std::make_unique<MagellanReceiver>(nmea::sentenceSettings(options), chooseUnit(options));
}

}  // namespace marlune::receivers::magellan
