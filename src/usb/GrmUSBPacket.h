// One packet of the USB protocol, little-endian throughout:
//
//   offset 0  packet type (0 the USB layer itself, 20 the application)
//          1  zero, 3 bytes
//          4  packet id, 2 bytes
//          6  zero, 2 bytes
//          8  data size, 4 bytes
//         12  data
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace marlune {

class GrmUSBPacket {
public:
    static constexpr std::size_t kHeaderSize = 12;
    static constexpr std::uint8_t kUsbLayer = 0;
    static constexpr std::uint8_t kApplication = 20;
    // Ids of the USB layer.
    static constexpr std::uint8_t kDataAvailable = 2;
    static constexpr std::uint8_t kStartSession = 5;
    static constexpr std::uint8_t kSessionStarted = 6;

    // A packet's bytes. Data of exactly one byte goes out as none: size 0 and no byte, on purpose.
    static std::vector<std::uint8_t> build(std::uint8_t ptype, std::uint8_t pid,
                                           std::span<const std::uint8_t> data);

    GrmUSBPacket() = default;
    explicit GrmUSBPacket(std::span<const std::uint8_t> received) { parse(received); }

    // Fills the fields as far as the bytes go, and never fails: fields that are cut off are 0, and
    // data holds what came of the announced size, whatever size a header claims.
    void parse(std::span<const std::uint8_t> received);

    [[nodiscard]] const std::vector<std::uint8_t>& GetData() const { return data_; }
    [[nodiscard]] std::uint16_t GetPid() const { return pid_; }
    [[nodiscard]] std::uint8_t GetPtype() const { return ptype_; }
    // The announced size; the data that came may be shorter.
    [[nodiscard]] std::uint32_t GetDataSize() const { return dataSize_; }

    [[nodiscard]] bool isDataAvailable() const {
        return ptype_ == kUsbLayer && pid_ == kDataAvailable;
    }
    [[nodiscard]] bool isSessionStarted() const {
        return ptype_ == kUsbLayer && pid_ == kSessionStarted;
    }

private:
    std::uint8_t ptype_ = 0;
    std::uint16_t pid_ = 0;
    std::uint32_t dataSize_ = 0;
    std::vector<std::uint8_t> data_;
};

}  // namespace marlune
