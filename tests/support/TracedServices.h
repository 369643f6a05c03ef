// What a procedure is handed, on the fake host, with the trace file open and debugging on.
#pragma once

#include "host/Services.h"
#include "marlune/GpsControlEvents.h"
#include "support/FakeHost.h"

namespace marlune {

struct TracedServices {
    explicit TracedServices(GpsControlEvents& events)
        : trace(host.documentsFolder()), services{host, events, trace, records, reports} {
        host.createTraceFolder();
        trace.setDebug(true);
        trace.openEmpty();
    }
    TracedServices(const TracedServices&) = delete;
    TracedServices& operator=(const TracedServices&) = delete;

    FakeHost host;  // its traceText() is what was traced
    DebugTrace trace;
    Records records;
    Reports reports;
    Services services;
};

}  // namespace marlune
