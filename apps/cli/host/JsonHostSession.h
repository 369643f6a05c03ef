// The scriptable host: calls of the control's members in, its events, boxes and results out.
//
// Lines are taken in their order. While a member runs, what arrives is taken whenever the control
// processes pending events and inside each event: calls that stop something and gpsDisconnect act
// there and then, other calls wait their turn. While gpsConnect waits for an answer, gpsDisconnect
// ends it within a read. Lines that were already waiting when the member was
// called keep their order: a stop directly after it acts at once too, everything behind a waiting
// call waits with it. So a script that was written in one piece runs in order.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "cli/HostServices.h"
#include "cli/Options.h"
#include "cli/Output.h"
#include "cli/TransferStop.h"
#include "cli/host/CommandInput.h"
#include "cli/host/CommandParser.h"
#include "cli/host/EventWriter.h"
#include "cli/host/JsonWriter.h"
#include "marlune/GpsControl.h"
#include "words/Speech.h"

namespace marlune::cli {

// Makes the control of a session.
using MakeControl = std::function<std::unique_ptr<GpsControl>(Host&, GpsControlEvents&)>;
inline std::unique_ptr<GpsControl> makePlatformControl(Host& host, GpsControlEvents& events) {
    return std::make_unique<GpsControl>(host, events);
}

class JsonHostSession : private EventListener {
public:
    JsonHostSession(const Options& options, int input, Output& output, HostServices& host,
                    const Interrupt& interrupt, const MakeControl& make = makePlatformControl);

    [[nodiscard]] GpsControl& control() { return *control_; }

    // Serves the input to its end, then disconnects. Returns early, having stopped what ran, when
    // the host requests a stop or nobody reads the output any more.
    void run();

private:
    void eventBegins() override;
    void eventWritten(const surface::Event& event) override;
    void processEvents();

    std::optional<Command> nextArrived();
    void queueArrived();
    void takeWhileRunning();
    void takeAside(Command command);
    void callUrgent();
    void callRegistered(const surface::Event& event);
    void take(Command command);
    void call(const Call& call);
    surface::Result perform(const Call& call);
    surface::Result upload(const Call& call);
    bool disconnectionWaits();

    const Options& options_;
    words::Speech speech_;
    HostServices& host_;
    CommandInput input_;
    Output& output_;
    const Interrupt& interrupt_;
    JsonWriter writer_;
    EventWriter events_;
    std::unique_ptr<GpsControl> control_;
    TransferStop stop_;

    std::deque<Command> waiting_;
    std::deque<Call> urgent_;     // to be made inside the present event
    std::vector<When> handlers_;  // in the order of their lines
    int running_ = 0;             // members in progress, one inside the other
    bool connecting_ = false;     // the innermost of them is gpsConnect
};

}  // namespace marlune::cli
