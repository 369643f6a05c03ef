#include "nmea/SentenceReader.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/CodePage.h"
#include "garmin/values/LineFields.h"
#include "nmea/Messages.h"
#include "nmea/Sentence.h"
#include "nmea/Waiting.h"

namespace marlune {
namespace {

void appendBounded(std::string& sentence, char character) {
    if (sentence.size() < kLongestSentence) {
        sentence += character;
    }
}

bool endsWait(std::string_view line, std::string_view prefix) {
    return line.substr(0, prefix.size()) == prefix || contains(line, "$PMGNCMD,END") ||
           contains(line, "$PMGNCMD,UNABLE");
}

}  // namespace

std::optional<char> SentenceReader::readByte() {
    services_.host.processEvents();
    std::uint8_t byte = 0;
    if (port_.readArrived({&byte, 1}) == 1) {
        return static_cast<char>(byte);
    }
    pauseWhenGone(port_, services_.host);
    return std::nullopt;
}

std::string SentenceReader::mgnGet(std::string_view prefix, std::int16_t timeOut) {
    Host& host = services_.host;
    last_ = 0;
    const double end = roundedClock(host) + timeOut;
    while (host.secondsClock() < end && mayGoOn(port_, host)) {
        if (!waitForDollar(timeOut)) {
            if (mayGoOn(port_, host)) {
                host.messageBox(nmeatext::kTimeOut, BoxIcon::critical);
            }
            return {};
        }
        std::string line = readSentence(timeOut);
        if (line.empty()) {
            return {};
        }
        services_.trace.traceLineOf([&] { return "Get: " + fromAnsi(line); });
        host.processEvents();
        if (endsWait(line, prefix)) {
            return line;
        }
        drop(line);
    }
    return {};
}

void SentenceReader::beginList() {
    between_ = Between::unknown;
    brokenPieces_ = 0;
}

// A byte outside of every sentence.
void SentenceReader::skip(char character) {
    const bool filler = character == '\r' || character == '\n' || character == '\0';
    if (between_ == Between::sentences && !filler) {
        between_ = Between::piece;
        ++brokenPieces_;
    }
}

void SentenceReader::drop(std::string_view sentence) {
    brokenPieces_ += Sentence(sentence).isDamaged() ? 1 : 0;
}

bool SentenceReader::waitForDollar(std::int16_t timeOut) {
    Host& host = services_.host;
    const double end = roundedClock(host) + timeOut;
    while (last_ != '$' && host.secondsClock() < end && mayGoOn(port_, host)) {
        last_ = readByte().value_or('\0');
        if (last_ != '$') {
            skip(last_);
        }
    }
    between_ = last_ == '$' ? Between::sentences : between_;
    return last_ == '$';
}

// From the "$" just read through the checksum digits; empty when no "*" came in time. The line
// ending is left for the next search to skip.
std::string SentenceReader::readSentence(std::int16_t timeOut) {
    Host& host = services_.host;
    const double end = roundedClock(host) + timeOut;
    std::string line(1, last_);
    do {
        const std::optional<char> byte = readByte();
        last_ = byte.value_or('\0');
        if (byte) {
            appendBounded(line, *byte);
        }
    } while (last_ != '*' && host.secondsClock() <= end && mayGoOn(port_, host));
    if (last_ != '*') {
        return {};
    }
    std::array<std::uint8_t, 2> digits{};
    const std::size_t count = port_.readArrived(digits);
    line.append(digits.begin(), digits.begin() + static_cast<std::ptrdiff_t>(count));
    return line;
}

void SentenceReader::nmeaGetPhrase(std::string_view codes, float listening, float initialDelay) {
    Host& host = services_.host;
    state_.found = false;
    state_.sentenceEvent = false;
    const std::string capitals = upperCase(trimBlanks(toAnsi(codes)));
    state_.codeFilter = fromAnsi(capitals);
    // The host's events are not processed in this wait: a caller counts on nothing happening
    // between its command and the first listening.
    const double listenFrom = roundedClock(host) + initialDelay;
    while (initialDelay > 0 && host.secondsClock() < listenFrom && mayGoOn(port_, host)) {
        host.pause(kWaitSlice);
    }
    const std::vector<std::string_view> alternatives = splitText(capitals, '|');
    const double end = roundedClock(host) + listening;
    while (host.secondsClock() < end && !state_.found && mayGoOn(port_, host)) {
        if (const std::optional<char> byte = readByte()) {
            takeCharacter(*byte, alternatives);
        }
    }
}

void SentenceReader::takeCharacter(char character,
                                   const std::vector<std::string_view>& alternatives) {
    if (character == '$') {
        brokenPieces_ += state_.inSentence ? 1 : 0;
        state_.sentence = "$";
        state_.inSentence = true;
        between_ = Between::sentences;
    } else if (character == '\r' && state_.inSentence) {
        finishSentence(alternatives);
    } else if (state_.inSentence) {
        appendBounded(state_.sentence, character);
    } else {
        skip(character);
    }
}

void SentenceReader::finishSentence(const std::vector<std::string_view>& alternatives) {
    state_.inSentence = false;
    const std::string& sentence = state_.sentence;
    services_.trace.traceLineOf([&] { return fromAnsi(sentence); });
    const bool matches = std::any_of(alternatives.begin(), alternatives.end(),
                                     [&](auto code) { return contains(sentence, code); });
    if (!matches) {
        drop(sentence);
        return;
    }
    state_.found = true;
    if (state_.sentenceEvent) {
        services_.events.PhraseNMEA(fromAnsi(sentence));
    } else {
        state_.lastSentence = sentence;
    }
}

std::string SentenceReader::nextSentence(std::string_view codes, float listening) {
    nmeaGetPhrase(codes, listening, 0);
    return state_.found ? std::exchange(state_.lastSentence, {}) : std::string();
}

}  // namespace marlune
