// The Host of a control on a form: boxes and file choosers belong to the active window of the
// program, and pending events are the messages of its thread.
#pragma once

#include <string>

#include "marlune/SystemHost.h"

namespace marlune::activex {

class FormHost : public SystemHost {
public:
    void messageBox(const std::string& text, BoxIcon icon) override;
    std::string chooseFile(const std::string& defaultExtension,
                           const std::string& startFolder) override;
    void setMousePointer(MousePointer pointer) override;
    void processEvents() override;
    // True once the thread is to end: its message loop was told to quit.
    bool stopRequested() override;
};

}  // namespace marlune::activex
