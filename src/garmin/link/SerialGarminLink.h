// Garmin packets over a serial line: the exchange of single frames, with the debug trace of each.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "garmin/link/GarminLink.h"
#include "garmin/link/GpsPacket.h"
#include "host/Services.h"
#include "serial/ComPort.h"

namespace marlune {

class SerialGarminLink final : public GarminLink {
public:
    // Both must outlive the link.
    SerialGarminLink(Services& services, PortLease& port) : services_(services), port_(port) {}

    bool send(std::uint8_t pid, std::span<const std::uint8_t> data) override;
    LinkPacket receive() override;
    void acknowledge(std::uint8_t pid) override;
    void discard() override { port_.ResetComBuffers(); }
    [[nodiscard]] bool holds() const override { return port_.holds(); }
    [[nodiscard]] bool isGone() const override { return port_.isGone(); }
    [[nodiscard]] bool acknowledges() const override { return true; }
    [[nodiscard]] bool gathers() const override { return false; }
    // Hosts of serial units have always been told false, and go by the events.
    [[nodiscard]] bool tellsSuccess() const override { return false; }

    // Writes a frame and traces it as "Send " and its bytes. Returns the count written.
    std::size_t grmSendPacket(std::span<const std::uint8_t> frame);

    // Reads one frame, byte by byte, and returns it as it came, still stuffed. Nothing at all gives
    // the one-byte array 0; a first byte that starts no frame gives the substitute frame with
    // packet id 1. The time-out is not used: the line's own time-outs hold, and a receiver that
    // stops in the middle of a frame is waited for until the host requests a stop or the port goes.
    // The frame lasts until the next one is read.
    const std::vector<std::uint8_t>& grmReadPacket(double timeout);

    // Reads one frame within a number of seconds. Nothing, or something that is no frame, gives the
    // substitute frame; what was no frame is read away and traced as "Erreur - ". Kept for its
    // name: no procedure calls it.
    std::vector<std::uint8_t> grmReadPacketTimed(double seconds);

private:
    [[nodiscard]] bool ended() const { return port_.isGone() || services_.host.stopRequested(); }
    std::vector<std::uint8_t> readFirstThree(double seconds);
    std::vector<std::uint8_t> drainNonFrame(std::span<const std::uint8_t> head);
    void traceFrame(std::string_view word, std::span<const std::uint8_t> frame);

    Services& services_;
    PortLease& port_;
    GpsPacket sent_;
    GpsPacket received_;
    std::vector<std::uint8_t> frame_;
};

}  // namespace marlune
