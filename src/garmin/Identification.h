// Identifies a Garmin unit: product data, then the protocols and data types it speaks.
#pragma once

#include <cstdint>
#include <span>

#include "garmin/GarminProcedure.h"

namespace marlune {

class GarminIdentification : public GarminProcedure {
public:
    using GarminProcedure::GarminProcedure;

    // The handshake on a serial line. False after a message box that tells why.
    bool grmGetAttributes();

    // The same for a link that gathers: one request, whose answer holds everything.
    bool grmGetAttributesGathered();

    // Aborts a running transfer: the abort command, once and unacknowledged; pending events; and
    // the transfer-running flag is cleared.
    void stopTransfer();

    // Asks for the battery voltages and keeps them as a text. Kept for its name: no member of the
    // control calls it.
    void grmGetVoltages();

private:
    void abortWhatRuns();
    LinkPacket requestProduct();
    bool acceptAcknowledge(const LinkPacket& reply);
    // Reports why there is no identified unit; always false.
    bool failSilently();
    bool fail(ConnectionOutcome outcome, std::uint16_t pid = 0);
    void noteDamage(const LinkPacket& packet);
    void takeProductData(std::span<const std::uint8_t> data);
    void skipExtendedData();
    bool takeCapabilities(const LinkPacket& packet);
    std::uint16_t productId_ = 0;
    std::uint16_t softwareVersion_ = 0;  // hundredths
};

}  // namespace marlune
