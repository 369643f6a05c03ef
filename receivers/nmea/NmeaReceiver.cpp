#include "receivers/nmea/NmeaReceiver.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <utility>

#include "receivers/nmea/RouteSentences.h"
#include "receivers/nmea/SentenceText.h"

namespace marlune::receivers::nmea {
namespace {

constexpr std::size_t kLongestName = 30;
constexpr const char* kWalking = "walk";
constexpr const char* kSearching = "search";

// $GPWPL,4555.417,N,00652.167,E,CHAMX*hh
std::string placeSentence(const Place& place) {
    constexpr int kDecimals = 3;
    return sentence("GPWPL," + coordinates(place.latitude, place.longitude, kDecimals) + ',' +
                    wireText(place.ident));
}

std::vector<std::string> listOf(const Memory& memory) {
    std::vector<std::string> list;
    for (const Place& place : memory.places()) {
        list.push_back(placeSentence(place));
    }
    for (const Route& route : memory.routes()) {
        const std::vector<std::string> sentences = routeSentences(kPlainRoutes, route);
        list.insert(list.end(), sentences.begin(), sentences.end());
    }
    return list;
}

std::vector<std::string> sentencesOfFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return sentencesOf(std::string{std::istreambuf_iterator<char>(file), {}});
}

}  // namespace

NmeaReceiver::NmeaReceiver(Settings settings, std::vector<std::string> played)
    : SentenceReceiver(std::move(settings), kLongestName),
      played_(std::move(played)),
      list_(listOf(memory())),
      tick_(std::numeric_limits<double>::lowest()) {
    wakeAt(tick_);
}

void NmeaReceiver::onWake(double now) {
    tick_ = nextOfStream(tick_, period(), now);
    wakeAt(tick_);
    if (played_.empty()) {
        sayFix(now);
    } else {
        saySentence(played_[nextPlayed_]);
        nextPlayed_ = (nextPlayed_ + 1) % played_.size();
    }
}

void NmeaReceiver::sayFix(double now) {
    const Fix fix = fixAt(now);
    saySentence(ggaSentence(fix));
    saySentence(rmcSentence(fix));
    saySentence(gsaSentence(fix));
    saySentence(gllSentence(fix));
    if (!list_.empty()) {
        saySentence(list_[nextOfList_]);
        nextOfList_ = (nextOfList_ + 1) % list_.size();
    }
}

std::vector<std::string> sentencesOf(std::string_view text) {
    std::vector<std::string> sentences;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (!line.starts_with('$')) {
            continue;
        }
        const bool isSigned = line.find('*') != std::string_view::npos;
        sentences.push_back(isSigned ? std::string(line) + "\r\n" : sentence(line.substr(1)));
    }
    return sentences;
}

std::vector<Unit> nmeaUnits() {
    return {{kWalking, "walks about and knows where it is"}, {kSearching, "finds no satellites"}};
}

std::unique_ptr<VirtualReceiver> makeNmeaReceiver(const ReceiverOptions& options) {
    SentenceReceiver::Settings settings = sentenceSettings(options);
    if (options.unit == kSearching) {
        settings.hasFix = false;
    } else if (!options.unit.empty() && options.unit != kWalking) {
        throw std::invalid_argument("the family nmea has no unit \"" + options.unit + "\"");
    }
    std::vector<std::string> played;
    if (!options.dataFile.empty()) {
        played = sentencesOfFile(options.dataFile);
    }
    return std::make_unique<NmeaReceiver>(std::move(settings), std::move(played));
}

}  // namespace marlune::receivers::nmea
