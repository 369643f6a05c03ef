// Garmin's serial frames as a device reads and writes them, checks included.
//
//   16  id  size  data...  checksum  16 3
//
// Id, size, data and checksum together add to 0 modulo 256; every 16 among them is doubled.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace marlune::receivers::garmin {

struct Packet {
    std::uint8_t id = 0;
    std::vector<std::uint8_t> data;
};

// The frame of a packet of at most 255 data bytes; what is beyond is left out.
std::vector<std::uint8_t> frameOf(std::uint8_t id, std::span<const std::uint8_t> data);

// Finds frames in a stream of bytes, one byte at a time. What lies between frames is skipped; a
// frame that begins inside another one ends that one without a word.
class FrameReader {
public:
    enum class Outcome {
        more,    // nothing complete yet
        packet,  // a good frame: packet() holds it
        bad      // a frame with a wrong size or checksum: packet().id is what it claims to be
    };

    Outcome take(std::uint8_t byte);
    [[nodiscard]] const Packet& packet() const { return packet_; }

    // Forgets the frame under way.
    void reset() { state_ = State::idle; }

private:
    // The "Dle" states have seen a 16 whose meaning depends on what follows.
    enum class State { idle, idleDle, body, bodyDle };

    void begin(std::uint8_t id);
    void keep(std::uint8_t byte);
    Outcome takeAfterDle(std::uint8_t byte);
    Outcome finish();

    State state_ = State::idle;
    std::vector<std::uint8_t> body_;  // id, size, data and checksum, 16s single
    Packet packet_;
};

}  // namespace marlune::receivers::garmin
