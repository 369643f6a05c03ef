// What receivers that speak sentences have in common: they take whole sentences from the line, hold
// a memory, and say one sentence after the other, so that whatever they hear in between can stop
// them.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "receivers/DeviceData.h"
#include "receivers/Families.h"
#include "receivers/VirtualReceiver.h"
#include "receivers/nmea/Fix.h"
#include "receivers/nmea/HeardSentence.h"
#include "receivers/nmea/Memory.h"

namespace marlune::receivers::nmea {

class SentenceReceiver : public VirtualReceiver {
public:
    struct Settings {
        DeviceData data;
        int baud = 4800;
        double rate = 1;     // fixes per second of its stream
        bool hasFix = true;  // else it does not know where it is
        double date = 0;     // days since 30/12/1899, UTC, when it first hears or is due
        std::vector<std::string> faults;
    };

    [[nodiscard]] std::vector<std::string> lines() const override { return memory_.lines(); }

protected:
    // Throws std::invalid_argument for faults and rates that cannot be.
    SentenceReceiver(Settings settings, std::size_t longestName);

    // The family's work: a sentence was heard; the time of wakeAt() has come.
    virtual void onSentence(const HeardSentence& heard, double now) = 0;
    virtual void onWake(double /*now*/) {}
    // The last of what sayAll() was given has been said.
    virtual void onAllSaid(double /*now*/) {}

    // Says a whole sentence at once.
    void saySentence(const std::string& sentence);
    // Says these sentences or blocks one after the other as the line takes them, in place of what
    // else was waiting; label in place of the sentences' own names.
    void sayAll(const std::vector<std::string>& texts, std::string_view label = {});
    // One wake-up, in place of the one before.
    void wakeAt(double time) { due_ = time; }
    // Forgets what was waiting to be said, and the wake-up.
    void fallSilent();

    [[nodiscard]] Memory& memory() { return memory_; }
    [[nodiscard]] const Settings& settings() const { return settings_; }
    // Its position, its date included, on its walk.
    [[nodiscard]] Fix fixAt(double now) const;
    [[nodiscard]] double period() const { return 1 / settings_.rate; }

private:
    struct Text {
        std::string label;
        std::string bytes;
    };

    void heard(std::span<const std::uint8_t> bytes, double now) override;
    void elapsed(double now) override;
    [[nodiscard]] std::optional<double> deadline() const override;
    [[nodiscard]] std::vector<std::uint8_t> unknownPacket() const override;
    void startClock(double now);

    Settings settings_;
    Memory memory_;
    Place whereabouts_;
    SentenceReader reader_;
    std::deque<Text> outgoing_;
    std::optional<double> due_;
    std::optional<double> started_;  // the clock when the date was settings_.date
    double now_ = 0;                 // the latest that is known
};

// The options that all these families share: data, speed, rate, fix, date and faults. Throws
// std::invalid_argument.
SentenceReceiver::Settings sentenceSettings(const ReceiverOptions& options);

// The moment of the next of a stream's fixes, of which one was due at that time: what was missed is
// missed.
double nextOfStream(double due, double period, double now);

}  // namespace marlune::receivers::nmea
