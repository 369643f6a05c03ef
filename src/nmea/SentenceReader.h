// The two ways to wait for a sentence on the port: by its beginning (Magellan) and by what it
// contains (MLR).
//
// Both poll the host's clock and process its events between single bytes. Deadlines count from the
// clock rounded to whole seconds, so a wait is right within half a second. Both end early, as if
// the time were over, when the port lease is lost or the host requests a stop.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/Services.h"
#include "nmea/NmeaState.h"
#include "serial/ComPort.h"

namespace marlune {

class SentenceReader {
public:
    SentenceReader(Services& services, PortLease& port, NmeaState& state)
        : services_(services), port_(port), state_(state) {}

    // Waits for a sentence that begins with prefix (exact case), or that contains "$PMGNCMD,END" or
    // "$PMGNCMD,UNABLE"; others are dropped. timeOut: whole seconds. Returns it as wire text, from
    // "$" through the two checksum characters; empty when none came. When not even a "$" came in
    // time the user is told "Délai dépassé".
    std::string mgnGet(std::string_view prefix, std::int16_t timeOut);

    // Waits for the first sentence that contains one of the codes, which stand between "|" in any
    // case; an empty code takes any sentence. Seconds: `initialDelay` without listening, then at
    // most `listening`. The sentence, wire text from "$" to the carriage return without it, is left
    // in NmeaState::lastSentence and found is set.
    void nmeaGetPhrase(std::string_view codes, float listening, float initialDelay);

    // The same without a delay; returns the sentence, empty when none came.
    std::string nextSentence(std::string_view codes, float listening);

    // A list begins. What came between its sentences, or in place of them, is then counted: pieces
    // that are no sentence, and sentences that were dropped and whose checksum is wrong. The rest
    // of a sentence that was under way when the list began is none of these.
    void beginList();
    [[nodiscard]] int brokenPieces() const { return brokenPieces_; }

private:
    enum class Between { unknown, sentences, piece };

    void skip(char character);
    void drop(std::string_view sentence);
    // Processes the host's events first. None when nothing came within the time-outs.
    std::optional<char> readByte();
    bool waitForDollar(std::int16_t timeOut);
    std::string readSentence(std::int16_t timeOut);
    void takeCharacter(char character, const std::vector<std::string_view>& alternatives);
    void finishSentence(const std::vector<std::string_view>& alternatives);

    Services& services_;
    PortLease& port_;
    NmeaState& state_;
    char last_ = 0;                       // the last single byte that mgnGet read
    Between between_ = Between::unknown;  // what the bytes outside of sentences are
    int brokenPieces_ = 0;
};

}  // namespace marlune
