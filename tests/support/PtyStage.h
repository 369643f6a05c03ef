// The dialogues of Dialogue.h over a real line: the control opens a pseudo terminal by its own
// serial port and its own clock, and a thread at the other end plays the device's side.
//
// Silence lasts as long as it does for users, a handshake 2.2 s: a test of this kind is worth it
// only for what a scripted port cannot show.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "marlune/GpsControl.h"
#include "marlune/SystemHost.h"
#include "support/Dialogue.h"
#include "support/Pty.h"
#include "support/TempFolder.h"

namespace marlune {

class PtyStage {
public:
    PtyStage();

    RecordedEvents events;

    GpsControl& control() { return control_; }

    // As Stage::play. The device answers a write once it has heard the whole of it.
    void play(const Script& script, const std::function<void()>& call);
    void connectGarmin(const std::string& tags);

private:
    class BoxHost : public SystemHost {
    public:
        BoxHost(std::vector<std::string>& log, const TempFolder& documents) : log_(log) {
            setDocumentsFolder(documents.path().string());
            setDecimalSeparator('.');
        }
        void messageBox(const std::string& text, BoxIcon icon) override {
            log_.push_back(boxText(icon, text));
        }

    private:
        std::vector<std::string>& log_;
    };

    // Of the control's thread only, as everything that the control calls.
    std::vector<std::string> log_;
    TempFolder documents_;
    Pty pty_;
    BoxHost host_;
    GpsControl control_;
};

}  // namespace marlune
