#pragma once

#include <string_view>

namespace marlune {

// What programs around the control ask about a family before there is a control.
struct FamilyTraits {
    std::string_view code;             // the protocol code
    bool isChosen = true;              // by SetGpsMark; otherwise gpsConnect finds it
    bool takesRate = false;            // SetGpsMark takes a line rate behind a semicolon
    bool isOnUsb = false;              // it is found, and needs no port
    bool isDrive = false;              // and is recognised by a description on it
    bool routesNeedWaypoints = false;  // a route download needs one of waypoints before it
};

}  // namespace marlune
