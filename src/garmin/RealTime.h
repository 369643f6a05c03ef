// The present state of a Garmin unit: its clock, its position, and the stream of positions.
#pragma once

#include <cstdint>
#include <string>

#include "garmin/GarminProcedure.h"
#include "garmin/records/PvtData.h"
#include "host/TransferLog.h"

namespace marlune {

class GarminRealTime : public GarminProcedure {
public:
    using GarminProcedure::GarminProcedure;

    // The unit's date and time in days, also shown in a plain box; 0 after an error box.
    double GetTime();
    // The position's text, named after the present time; empty after an error box.
    std::string getPosition();
    // Runs until the real-time flag is cleared or the unit falls silent. Always false. streams: set
    // while the unit sends its positions, and cleared by whoever tells it to stop.
    bool StartPvtData(bool& streams);
    // Tells the unit to stop; its answer is not waited for.
    void endOutput();

private:
    // The packet that answers a command, behind its acknowledgement where there is one. False:
    // what came instead of the acknowledgement.
    bool receiveAnswer(LinkPacket& packet);
    void showNoPosition(std::uint16_t pid);
    void skipAcknowledgement();
    Ending follow(TransferLog& log);
    void takePvt(const LinkPacket& packet, TransferLog& log);

    PvtData pvt_;
    bool started_ = false;  // the first record came
};

}  // namespace marlune
