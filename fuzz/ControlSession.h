// A whole session with a device that says anything, and a host application whose handler does
// anything once. Input: the moment when the handler acts, what it does, whether the trace is on,
// then services, each a byte, with what the device says meanwhile (FuzzPort.h) between them.
//
// Every download, and every run of real time, that has begun ends, and each member comes to an end.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "FuzzPort.h"
#include "marlune/GpsControl.h"
#include "support/Dialogue.h"

namespace marlune {

class ControlSession {
public:
    // A family's code, as in SetGpsMark. The input must outlive the session.
    ControlSession(FuzzInput& input, const std::string& mark);
    void run();

private:
    // Its documents folder has a place for the trace.
    class QuietHost : public FakeHost {
    public:
        std::string documentsFolder() override;
    };

    void serve(std::uint8_t which);
    void hear(const std::string& text);
    void pass(int& left);
    void act();

    QuietHost host_;
    RecordedEvents events_{[this](const std::string& text) { hear(text); }};
    FuzzInput& input_;
    // Of these one is counted down to the moment when the handler acts.
    int eventsLeft_;
    int roundsLeft_;  // of processing pending events
    std::uint8_t action_;
    FuzzPort* device_ = nullptr;
    std::unique_ptr<GpsControl> control_;
    int downloadsOpen_ = 0;
    int runsOpen_ = 0;
};

}  // namespace marlune
