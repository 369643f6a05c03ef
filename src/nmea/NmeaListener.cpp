#include "nmea/NmeaListener.h"

#include <algorithm>
#include <array>

#include "base/CodePage.h"
#include "base/SystemError.h"
#include "base/VersionText.h"
#include "family/ConnectionState.h"
#include "nmea/Messages.h"
#include "nmea/Sentence.h"
#include "nmea/Waiting.h"
#include "serial/LineSpeeds.h"

namespace marlune {
namespace {

// The fourth field tells the hemisphere in the sentences that this listener is meant for; what
// others have there decides all the same.
bool hasPosition(std::string_view sentence) {
    for (int field = 0; field < 3; ++field) {
        const std::size_t comma = sentence.find(',');
        if (comma == std::string_view::npos) {
            return false;
        }
        sentence.remove_prefix(comma + 1);
    }
    const std::string_view hemisphere = sentence.substr(0, sentence.find(','));
    return hemisphere == "N" || hemisphere == "S";
}

class Listener {
public:
    Listener(Services& services, PortLease& port, NmeaState& state)
        : services_(services), port_(port), state_(state), code_(toAnsi(state.codeFilter)) {
        begun_.reserve(256);
    }

    void run(std::int16_t inactivity);
    void tellEnd();
    // How many sentences were told.
    [[nodiscard]] int told() const { return told_; }
    [[nodiscard]] Ending ending() const;

private:
    void takeArrived(std::string_view arrived);
    void append(std::string_view part);
    void evaluate(std::string_view sentence);
    void restartTimeOut() { end_ = roundedClock(services_.host) + inactivity_; }
    [[nodiscard]] bool goesOn() const {
        return !state_.stopRequested && mayGoOn(port_, services_.host);
    }

    Services& services_;
    PortLease& port_;
    NmeaState& state_;
    std::string code_;
    std::string begun_;  // what came of the sentence that the line is in
    std::int16_t inactivity_ = 0;
    double end_ = 0;
    int told_ = 0;
};

// A stream that goes on with positions ends by the host's StopNMEA, or by their absence.
Ending Listener::ending() const {
    const Ending silence = endingOfSilence(port_, services_.host);
    if (silence != Ending::interrupted) {
        return silence;
    }
    if (state_.stopRequested || state_.found) {
        return Ending::complete;
    }
    return told_ == 0 ? Ending::nothingThere : Ending::interrupted;
}

// Bytes that are already here are taken in one piece: a read never waits longer than it would for
// one byte, and a handler's StopNMEA still ends the listener at the sentence that it was told.
void Listener::run(std::int16_t inactivity) {
    std::array<std::uint8_t, 4096> buffer{};
    inactivity_ = inactivity;
    restartTimeOut();
    while (services_.host.secondsClock() < end_ && goesOn()) {
        const std::size_t count = readSome(port_, buffer);
        if (count > 0) {
            takeArrived({reinterpret_cast<const char*>(buffer.data()), count});
        } else if (goesOn()) {  // a read that the host cut short is no silence
            state_.found = false;
            pauseWhenGone(port_, services_.host);
        }
        services_.host.processEvents();
    }
}

// A sentence ends where the next "$" is. One that arrived whole is looked at where it lies.
void Listener::takeArrived(std::string_view arrived) {
    std::size_t end = arrived.find('$');
    append(arrived.substr(0, end));
    if (end == std::string_view::npos) {
        return;
    }
    evaluate(begun_);
    for (arrived.remove_prefix(end); goesOn(); arrived.remove_prefix(end)) {
        end = arrived.find('$', 1);
        if (end == std::string_view::npos) {
            begun_ = arrived;
            return;
        }
        evaluate(arrived.substr(0, end));
    }
}

void Listener::append(std::string_view part) {
    begun_ += part.substr(0, kLongestSentence - std::min(kLongestSentence, begun_.size()));
}

void Listener::evaluate(std::string_view sentence) {
    if (!contains(sentence, code_)) {
        return;
    }
    state_.found = hasPosition(sentence);
    if (!state_.found) {
        return;
    }
    const std::string text = fromAnsi(sentence);
    ++told_;
    services_.events.PhraseNMEA(text);
    services_.trace.traceLine(text);
    restartTimeOut();
    // Also here: the next read may bring many sentences, and a user who stops expects none of them.
    services_.host.processEvents();
}

void Listener::tellEnd() {
    Host& host = services_.host;
    const std::string date = host.dateText(host.now());
    if (state_.found) {
        services_.trace.traceLine(date + ':' + nmeatext::kListenerDone);
        host.messageBox(nmeatext::kListenerDone, BoxIcon::information);
    } else {
        const std::string text = state_.codeFilter + nmeatext::kListenerNoPosition;
        services_.trace.traceLine(date + ':' + text);
        host.messageBox(text, BoxIcon::critical);
    }
}

void tellOpenError(Services& services, std::int32_t error) {
    const std::string description = systemErrorText(error);
    services.trace.traceLine("erreur " + std::to_string(error) + " - " + description);
    services.host.messageBox(description, BoxIcon::critical);
}

}  // namespace

bool startNmea(Services& services, ComPort& port, NmeaState& state,
               const std::function<void()>& closeConnection, const std::string& NMEACode,
               std::int16_t Delai) {
    TransferLog log(services, TransferKind::sentences, TransferDirection::download);
    state.stopRequested = false;
    services.trace.openAppend();
    services.trace.traceLine("StartNMEA" + versionText());
    closeConnection();
    port.setLine(lineSettings(kNmeaSpeed));
    state.codeFilter = fromAnsi(upperCase(trimBlanks(toAnsi(NMEACode))));
    state.lastSentence.clear();
    state.sentenceEvent = true;
    state.found = false;
    if (const std::int32_t error = port.open(); error != 0) {
        tellOpenError(services, error);
        port.close();
        log->detail = systemErrorText(error);
        return log.end(Ending::deviceGone);
    }
    PortLease lease(port);
    Listener listener(services, lease, state);
    listener.run(Delai);
    listener.tellEnd();
    const bool positionSeen = state.found;
    log->transferred = listener.told();
    const Ending ending = listener.ending();
    // A handler that closed the port may have opened it, and the trace, for something else.
    if (lease.holds()) {
        port.close();
        services.trace.close();
    }
    state.sentenceEvent = false;
    state.found = false;
    services.events.EndDownload("NMEA_END");
    log.end(ending);
    return positionSeen;
}

}  // namespace marlune
