// What every procedure is handed: the host, its events and the trace; and where it leaves, beside
// them, the values that it transfers and how it went.
#pragma once

#include "host/DebugTrace.h"
#include "marlune/GpsControlEvents.h"
#include "marlune/Host.h"
#include "marlune/Records.h"
#include "marlune/Report.h"

namespace marlune {

struct Reports {
    TransferReport transfer;  // of the one that ended last
    ConnectionReport connection;
    unsigned transfersBegun = 0;  // counts, so that one can be told from the next
};

struct Services {
    Host& host;
    GpsControlEvents& events;
    DebugTrace& trace;
    Records& records;
    Reports& reports;
};

}  // namespace marlune
