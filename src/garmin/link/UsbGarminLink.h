// Garmin packets over USB: nothing is acknowledged, an answer of several packets is gathered by the
// block reader, and a transfer's result is real. A session must have been started.
#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string_view>

#include "garmin/link/GarminLink.h"
#include "host/Services.h"
#include "usb/BlockReader.h"
#include "usb/UsbPort.h"

namespace marlune {

class UsbGarminLink final : public GarminLink {
public:
    // How packets that answer a send(), not a request(), are read.
    enum class Answer {
        oneBlock,    // one block of the interrupt pipe, within 200 ms
        eitherPipe,  // the same, or one block of the bulk pipe it announces, within 1000 ms each
        stream       // packet after packet on either pipe, each within 1500 ms
    };

    // Both must outlive the link. sendLabel: what the trace writes in front of a packet sent.
    UsbGarminLink(Services& services, UsbLease& usb, Answer answer,
                  std::string_view sendLabel = "Send ");

    bool send(std::uint8_t pid, std::span<const std::uint8_t> data) override;
    bool request(std::uint8_t pid, std::span<const std::uint8_t> data) override;
    LinkPacket receive() override;
    void acknowledge(std::uint8_t /*pid*/) override {}
    // The session's start has emptied the pipes.
    void discard() override {}
    [[nodiscard]] bool holds() const override { return usb_.holds(); }
    [[nodiscard]] bool isGone() const override { return usb_.isGone(); }
    [[nodiscard]] bool acknowledges() const override { return false; }
    [[nodiscard]] bool gathers() const override { return true; }
    [[nodiscard]] bool tellsSuccess() const override { return true; }

private:
    [[nodiscard]] LinkPacket receiveOneBlock();
    [[nodiscard]] LinkPacket receiveFromEitherPipe();
    [[nodiscard]] LinkPacket receiveFromStream();
    std::vector<std::uint8_t> build(std::uint8_t pid, std::span<const std::uint8_t> data);

    Services& services_;
    UsbLease& usb_;
    Answer answer_;
    std::string_view sendLabel_;
    BlockReader reader_;
    bool requested_ = false;  // what is received was gathered
    std::deque<GrmUSBPacket> gathered_;
};

}  // namespace marlune
