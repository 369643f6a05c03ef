// One Garmin packet and its frame on a serial line.
//
//   start  packet id  size  data      checksum  end
//   16     1 byte     1     size      1         16 3
//
// The checksum makes all bytes from packet id through checksum add to 0 modulo 256. Every 16 among
// packet id, size, data and checksum is followed by a second 16 ("stuffing"); start and end are
// not. The format is the basic link protocol L000 of Garmin's device interface document.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace marlune {

constexpr std::uint8_t kDle = 16;
constexpr std::uint8_t kEtx = 3;

// The memory of one packet serves the next, so an exchange that keeps its packet allocates nothing.
class GpsPacket {
public:
    // The frame of a packet, which lasts until the next one is built. At most 255 bytes of data
    // fit: with more nothing of the frame can be made, the result is empty and errorNumber() is 6.
    const std::vector<std::uint8_t>& Build(std::uint8_t pid, std::span<const std::uint8_t> data);

    // Takes a frame apart, still stuffed as it came. Its end is not looked at, a wrong checksum
    // changes nothing (isDamaged() tells), and data may be shorter than announced. False with
    // packet id 0 for fewer than 4 bytes.
    bool Parse(std::span<const std::uint8_t> frame);

    // Whether the checksum of the frame parsed last did not match, or was missing.
    [[nodiscard]] bool isDamaged() const { return damaged_; }

    [[nodiscard]] std::uint8_t GetPid() const { return pid_; }
    void LetPid(std::uint8_t pid) { pid_ = pid; }
    [[nodiscard]] std::vector<std::uint8_t> GetData() const { return data_; }
    // The same without a copy, until the next Build or Parse.
    [[nodiscard]] std::span<const std::uint8_t> data() const { return data_; }

    // The run-time error of the last Build, 0 for none.
    [[nodiscard]] int errorNumber() const { return errorNumber_; }

private:
    std::uint8_t pid_ = 0;
    std::uint8_t size_ = 0;
    std::vector<std::uint8_t> data_;
    std::vector<std::uint8_t> frame_;
    int errorNumber_ = 0;
    bool damaged_ = false;
};

// Two operations on byte arrays of the receive side, kept for their names: nothing here calls them.
namespace GpsBuffer {

// The bytes in reverse order.
std::vector<std::uint8_t> Inverse(std::span<const std::uint8_t> bytes);

// Removes the stuffing of a frame: up to the third byte from the end a 16 (other than the very
// first byte when keepFirst is set) is dropped and the byte behind it kept, whatever it is; the
// last two bytes stay as they are. Fewer than 3 bytes raise the overflow error.
std::vector<std::uint8_t> Supp16(std::span<const std::uint8_t> bytes, bool keepFirst);

}  // namespace GpsBuffer

}  // namespace marlune
