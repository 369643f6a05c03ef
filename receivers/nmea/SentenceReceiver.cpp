#include "receivers/nmea/SentenceReceiver.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "receivers/nmea/SentenceText.h"

namespace marlune::receivers::nmea {
namespace {

constexpr double kFastest = 20;  // fixes per second

std::vector<std::uint8_t> bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

}  // namespace

SentenceReceiver::SentenceReceiver(Settings settings, std::size_t longestName)
    : VirtualReceiver(settings.baud, Faults(settings.faults)),
      settings_(std::move(settings)),
      memory_(std::move(settings_.data), longestName) {
    if (!(settings_.rate > 0 && settings_.rate <= kFastest)) {
        throw std::invalid_argument("the rate lies above 0 and up to 20 fixes per second");
    }
    whereabouts_ = whereabouts(memory_.places());
}

void SentenceReceiver::startClock(double now) {
    started_ = started_.value_or(now);
    now_ = now;
}

Fix SentenceReceiver::fixAt(double now) const {
    const double seconds = now - started_.value_or(now);
    Fix fix = walkRound(whereabouts_, seconds, settings_.date + seconds / kSecondsADay);
    fix.valid = settings_.hasFix;
    return fix;
}

void SentenceReceiver::heard(std::span<const std::uint8_t> bytes, double now) {
    startClock(now);
    for (const std::uint8_t byte : bytes) {
        if (reader_.take(byte)) {
            onSentence(HeardSentence(reader_.text()), now);
        }
    }
}

void SentenceReceiver::elapsed(double now) {
    startClock(now);
    if (!outgoing_.empty()) {
        const Text text = std::move(outgoing_.front());
        outgoing_.pop_front();
        say(text.label, bytesOf(text.bytes));
        if (outgoing_.empty()) {
            onAllSaid(now);
        }
    } else if (due_ && *due_ <= now) {
        due_.reset();
        onWake(now);
    }
}

std::optional<double> SentenceReceiver::deadline() const {
    return outgoing_.empty() ? due_ : now_;
}

std::vector<std::uint8_t> SentenceReceiver::unknownPacket() const {
    return bytesOf(sentence("PXYZQ,1,2,3"));
}

void SentenceReceiver::saySentence(const std::string& sentence) {
    say(labelOf(sentence), bytesOf(sentence));
}

void SentenceReceiver::sayAll(const std::vector<std::string>& texts, std::string_view label) {
    outgoing_.clear();
    for (const std::string& text : texts) {
        outgoing_.push_back({std::string(label.empty() ? labelOf(text) : label), text});
    }
}

void SentenceReceiver::fallSilent() {
    outgoing_.clear();
    due_.reset();
}

SentenceReceiver::Settings sentenceSettings(const ReceiverOptions& options) {
    SentenceReceiver::Settings settings;
    settings.data = options.dataFile.empty() ? builtInData() : readDataFile(options.dataFile);
    settings.baud = options.baud.value_or(settings.baud);
    settings.rate = options.rate;
    settings.hasFix = options.hasFix;
    settings.date = firstDate(options);
    settings.faults = options.faults;
    return settings;
}

double nextOfStream(double due, double period, double now) {
    return due + period > now ? due + period : now + period;
}

}  // namespace marlune::receivers::nmea
