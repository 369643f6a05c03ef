#include "garmin/GarminProcedure.h"

#include "garmin/link/PacketIds.h"
#include "host/TransferLog.h"

namespace marlune {

Ending GarminProcedure::endingOf(std::uint16_t pid) const {
    if (pid == pid::kNak) {
        return Ending::refused;
    }
    if (pid != 0) {
        return Ending::protocolError;
    }
    return endingOfSilentLine(services_.host, link_.holds(), link_.isGone());
}

}  // namespace marlune
