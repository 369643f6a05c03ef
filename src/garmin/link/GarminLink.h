// The link to a Garmin receiver: whole packets, over a serial line or over USB. Downloads, uploads
// and real time are written once over this interface.
#pragma once

#include <cstdint>
#include <span>

namespace marlune {

// A received packet. Id 0 counts as nothing, for most procedures; id 1 that something came which is
// no packet.
struct LinkPacket {
    std::uint16_t pid = 0;
    std::span<const std::uint8_t> data;  // the link's own memory: until the next receive()
    // On a serial line, false for silence alone: a packet of id 0 came, too.
    bool came = false;
    // The checksum was wrong: the protocol takes such a packet as it stands.
    bool damaged = false;
};

class GarminLink {
public:
    GarminLink() = default;
    GarminLink(const GarminLink&) = delete;
    GarminLink& operator=(const GarminLink&) = delete;
    virtual ~GarminLink() = default;

    // Writes one packet; false when the receiver or the system did not take it.
    virtual bool send(std::uint8_t pid, std::span<const std::uint8_t> data) = 0;

    // Writes a request that several packets answer. A link that gathers takes all of them in here.
    virtual bool request(std::uint8_t pid, std::span<const std::uint8_t> data) {
        return send(pid, data);
    }

    // Waits for one packet, as long as the line's time-outs allow.
    virtual LinkPacket receive() = 0;

    // Tells the receiver that a packet arrived; nothing on a link that does not acknowledge.
    virtual void acknowledge(std::uint8_t pid) = 0;

    // Empties the line before a service.
    virtual void discard() = 0;

    // False once the connection was closed or replaced under the running procedure.
    [[nodiscard]] virtual bool holds() const = 0;

    // True when nothing can come any more.
    [[nodiscard]] virtual bool isGone() const { return !holds(); }

    // In what links differ for the procedures.

    // Whether both sides acknowledge every packet before the next one goes out.
    [[nodiscard]] virtual bool acknowledges() const = 0;
    // Whether request() waits until the whole answer is there, and receive() hands out what it
    // gathered. Then the answer has as many packets as came, whatever count the unit announced, and
    // packet id 0 is its end; on a link that does not gather, id 0 is a silence that may pass.
    [[nodiscard]] virtual bool gathers() const = 0;
    // Whether a transfer that went well ends in true.
    [[nodiscard]] virtual bool tellsSuccess() const = 0;
};

}  // namespace marlune
