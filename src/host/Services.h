// What every procedure is handed: the host, its events, and the trace.
#pragma once

#include <string>

#include "host/DebugTrace.h"
#include "marlune/GpsControlEvents.h"
#include "marlune/Host.h"

namespace marlune {

struct Services {
    Host& host;
    GpsControlEvents& events;
    DebugTrace& trace;
};

// The system's own text for an error code, without surrounding blanks and at most 255 characters.
std::string systemErrorText(std::int32_t code);

// The code of the operation that the system has just refused; never 0.
std::int32_t lastSystemError();

}  // namespace marlune
