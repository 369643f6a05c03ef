// The platform's services as the command line gives them: what the user would see, and the moments
// at which pending events are processed, go to whoever runs the control.
#pragma once

#include <functional>
#include <string>

#include "cli/Interrupt.h"
#include "marlune/SystemHost.h"

namespace marlune::cli {

class HostServices : public SystemHost {
public:
    explicit HostServices(const Interrupt& interrupt) : interrupt_(interrupt) {}

    std::function<void(const std::string&, BoxIcon)> onBox;
    std::function<void()> onProcessEvents;
    // Comes at least every 50 ms of every wait. It must call no member of the control; true ends
    // what runs.
    std::function<bool()> onWait;

    // Asks every running transfer to end, as a signal does.
    void requestStop() { stop_ = true; }
    // Whether the program is to end: a signal came, or somebody asked.
    [[nodiscard]] bool ends() const { return stop_ || interrupt_.requested(); }

    void messageBox(const std::string& text, BoxIcon icon) override {
        if (onBox) {
            onBox(text, icon);
        }
    }
    void processEvents() override {
        if (onProcessEvents) {
            onProcessEvents();
        }
    }
    bool stopRequested() override {
        return (onWait && onWait()) || ends() || SystemHost::stopRequested();
    }

private:
    const Interrupt& interrupt_;
    bool stop_ = false;
};

}  // namespace marlune::cli
