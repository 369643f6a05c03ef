// The block download that the bulk transfers of MLR receivers share.
#pragma once

#include <string_view>
#include <vector>

#include "host/Services.h"
#include "nmea/mlr/BlocMLR.h"
#include "serial/ComPort.h"

namespace marlune {

struct MlrBlocks {
    Ending ending = Ending::complete;  // of anything else there are no blocks
    std::vector<BlocMLR> blocks;       // in order of arrival, those without records left out
    int total = 0;                     // records, as the blocks' counts say
    int dropped = 0;                   // blocks that there was no room for
};

// Sends request at 4800 baud, listens at 38400 until the closing block has come, and sends closing
// at 4800 again. The receiver changes its speed by itself; nothing is shaken hands about.
//
// There is no time-out: a receiver that falls silent is waited for. Ends without a result when the
// host requests a stop, a handler closes the port, or the port is gone: pulled out, not open in the
// first place (it is not opened then), or not to be opened at the raised speed.
MlrBlocks mlrBlockDownload(Services& services, PortLease& port, std::string_view request,
                           std::string_view closing);

}  // namespace marlune
