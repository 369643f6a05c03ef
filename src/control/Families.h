// The families of receivers, one row each: how a family is connected, identified, and which
// procedure serves each member of the control. A new family is one folder and one row.
#pragma once

#include <string>

#include "base/Contains.h"
#include "control/ControlState.h"

namespace marlune {

// Runs a transfer; its result is the member's.
using Service = bool (*)(ControlState&);

// A member that a family does not offer stays null: it shows "Protocole non disponible pour ce
// GPS".
struct Family {
    bool (*matches)(const std::string& protocolCode) = nullptr;
    // Identifies the receiver on the opened connection; null when there is nothing to identify.
    Service identify = nullptr;
    // Refreshes what getIdent tells, when that takes a request; null otherwise.
    Service refreshIdent = nullptr;
    std::string (*protocols)(ControlState&) = nullptr;

    Service getWaypts = nullptr;
    Service getTracks = nullptr;
    Service GetRoutes = nullptr;
    Service getProximites = nullptr;
    Service SendWaypts = nullptr;
    Service SendRoutes = nullptr;
    Service SendTraces = nullptr;
    Service StartPvtData = nullptr;
    double (*GetTime)(ControlState&) = nullptr;
    std::string (*getPosition)(ControlState&) = nullptr;
};

// The row of a protocol code; a row without services for a code that no family knows.
const Family& familyOf(const std::string& protocolCode);

}  // namespace marlune
