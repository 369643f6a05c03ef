// What every procedure is handed: the host, its events, and the trace.
#pragma once

#include "host/DebugTrace.h"
#include "marlune/GpsControlEvents.h"
#include "marlune/Host.h"

namespace marlune {

struct Services {
    Host& host;
    GpsControlEvents& events;
    DebugTrace& trace;
};

}  // namespace marlune
