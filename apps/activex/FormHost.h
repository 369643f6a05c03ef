// The Host of a control on a form: boxes and file choosers belong to the active window of the
// program, and pending events are the messages of its thread. A receiver that says nothing for 30
// seconds in the middle of a member ends it; the value "Patience" (seconds, 0 for ever) of the key
// Software\Marlune, the user's or the machine's, says otherwise.
#pragma once

#include <string>

#include "marlune/SystemHost.h"

namespace marlune::activex {

class InPlace;

class FormHost : public SystemHost {
public:
    // inPlace: the control on its form; it outlives the host.
    explicit FormHost(InPlace& inPlace);

    void messageBox(const std::string& text, BoxIcon icon) override;
    std::string chooseFile(const std::string& defaultExtension,
                           const std::string& startFolder) override;
    void setMousePointer(MousePointer pointer) override;
    void processEvents() override;
    // True once the thread is to end, since its message loop was told to quit, or the patience has
    // ended. It is asked before every
    // read from a receiver, and lets the thread's windows live meanwhile: they are painted and get
    // their timers, and nothing else. Input waits until somebody processes events.
    bool stopRequested() override;

    // True while a window is painted or gets its timer in the middle of a running member. Another
    // use of the line would fall into the dialogue with the receiver.
    [[nodiscard]] bool isBetweenReads() const { return betweenReads_; }

    // Ends the running member, and every later one, as if the thread were to end.
    void stop() { stopped_ = true; }

private:
    void letWindowsLive();

    InPlace& inPlace_;
    bool betweenReads_ = false;
    bool stopped_ = false;
    bool quits_ = false;
    unsigned long lookedAt_ = 0;  // on the system's clock of milliseconds
};

}  // namespace marlune::activex
