// A sentence procedure on a scripted port and a fake host. Everything that happens is one ordered
// list of lines:
//
//     open baud=4800 ...              the port opens
//     close                           and closes
//     > $PMGNCMD,STOP*6A\r\n          a write
//     WayptData|100|W;...|D           an event
//     box critical: Délai dépassé     a box
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "family/ConnectionState.h"
#include "nmea/NmeaState.h"
#include "nmea/magellan/MagellanState.h"
#include "nmea/mlr/MlrState.h"
#include "serial/ComPort.h"
#include "support/Dialogue.h"
#include "support/TracedServices.h"

namespace marlune {

using Log = std::vector<std::string>;

class SentenceStage {
public:
    SentenceStage();

    // When the control has written `sent`, the device answers, so many seconds later.
    void expect(std::string_view sent, std::string_view answer = {}, double delay = 0) const;
    // The device speaks, so many seconds after what it said before.
    void speak(std::string_view text, double delay = 0) const;

    // The log, which begins anew.
    Log takeLog() { return std::exchange(log_, {}); }

    RecordedEvents events;

private:
    TracedServices traced_;

public:
    FakeHost& host = traced_.host;
    DebugTrace& trace = traced_.trace;
    Services& services = traced_.services;
    ScriptedPort* line = new ScriptedPort(host);
    std::unique_ptr<ComPort> port =
        std::make_unique<ComPort>(host, std::unique_ptr<SerialPort>(line));

    ConnectionState connection;
    NmeaState nmea;
    MagellanState magellan;
    MlrState mlr;

private:
    Log log_;
};

inline Log operator+(Log left, const Log& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// A write as the log tells it.
inline std::string writes(const std::string& text) {
    return "> " + text;
}

// A sentence, from "$" up to where its "*" goes, as a device sends it; the checksum is counted
// here.
std::string sentence(const std::string& body);

}  // namespace marlune
