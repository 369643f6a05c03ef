// Identifies a Garmin unit: product data, then the protocols and data types it speaks.
#pragma once

#include <cstdint>
#include <span>

#include "family/ConnectionState.h"
#include "garmin/GarminState.h"
#include "garmin/link/GarminLink.h"
#include "host/Services.h"

namespace marlune {

class GarminIdentification {
public:
    GarminIdentification(Services& services, GarminLink& link, ConnectionState& state,
                         GarminState& garmin)
        : services_(services), link_(link), state_(state), garmin_(garmin) {}

    // The handshake on a serial line. False after a message box that tells why.
    bool grmGetAttributes();

    // The same for a link that gathers: one request, whose answer holds everything.
    bool grmGetAttributesGathered();

    // Asks for the battery voltages and keeps them as a text.
    void grmGetVoltages();

private:
    void abortWhatRuns();
    LinkPacket requestProduct();
    bool acceptAcknowledge(const LinkPacket& reply);
    void takeProductData(std::span<const std::uint8_t> data);
    void skipExtendedData();
    void takeCapabilities(const LinkPacket& packet);
    [[nodiscard]] bool mayGoOn() const { return link_.holds() && !services_.host.stopRequested(); }

    Services& services_;
    GarminLink& link_;
    ConnectionState& state_;
    GarminState& garmin_;
    std::uint16_t productId_ = 0;
    std::uint16_t softwareVersion_ = 0;  // hundredths
};

// Sends a command: packet 10 with the code and 0.
bool sendCommand(GarminLink& link, std::uint8_t code);
// The same for a command that several packets answer.
bool requestTransfer(GarminLink& link, std::uint8_t code);

// Aborts a running transfer: the abort command, once and unacknowledged; pending events; and the
// transfer-running flag is cleared.
void stopTransfer(Services& services, GarminLink& link, ConnectionState& state);

}  // namespace marlune
