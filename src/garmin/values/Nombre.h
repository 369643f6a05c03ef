// Numbers to and from the little-endian bytes of Garmin records.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace marlune {

class Nombre {
public:
    static std::array<std::uint8_t, 8> DoubletoBytes(double value);
    static std::array<std::uint8_t, 4> FloattoBytes(float value);
    static std::array<std::uint8_t, 4> LongToBytes(std::int32_t value);
    static std::array<std::uint8_t, 2> InttoBytes(std::int16_t value);

    // The readers start at the first byte and ignore what follows; fewer bytes than the number has
    // raise the index error.
    static double BytestoDbl(std::span<const std::uint8_t> bytes);
    static double BytestoSingle(std::span<const std::uint8_t> bytes);
    static std::int32_t BytestoLong(std::span<const std::uint8_t> bytes);
    static std::int16_t BytestoInt(std::span<const std::uint8_t> bytes);
};

}  // namespace marlune
