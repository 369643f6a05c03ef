#include "garmin/values/Nombre.h"

#include <bit>

#include "garmin/values/ByteAccess.h"

namespace marlune {
namespace {

// The low bytes of value, lowest first.
template <std::size_t count>
std::array<std::uint8_t, count> littleEndian(std::uint64_t value) {
    std::array<std::uint8_t, count> bytes{};
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
    return bytes;
}

template <std::size_t count>
std::uint64_t fromLittleEndian(Bytes bytes) {
    const Bytes number = bytesAt(bytes, 0, count);
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        value |= std::uint64_t{number[i]} << (8 * i);
    }
    return value;
}

}  // namespace

std::array<std::uint8_t, 8> Nombre::DoubletoBytes(double value) {
    return littleEndian<8>(std::bit_cast<std::uint64_t>(value));
}

std::array<std::uint8_t, 4> Nombre::FloattoBytes(float value) {
    return littleEndian<4>(std::bit_cast<std::uint32_t>(value));
}

std::array<std::uint8_t, 4> Nombre::LongToBytes(std::int32_t value) {
    return littleEndian<4>(static_cast<std::uint32_t>(value));
}

std::array<std::uint8_t, 2> Nombre::InttoBytes(std::int16_t value) {
    return littleEndian<2>(static_cast<std::uint16_t>(value));
}

double Nombre::BytestoDbl(std::span<const std::uint8_t> bytes) {
    return std::bit_cast<double>(fromLittleEndian<8>(bytes));
}

double Nombre::BytestoSingle(std::span<const std::uint8_t> bytes) {
    return std::bit_cast<float>(static_cast<std::uint32_t>(fromLittleEndian<4>(bytes)));
}

std::int32_t Nombre::BytestoLong(std::span<const std::uint8_t> bytes) {
    return static_cast<std::int32_t>(fromLittleEndian<4>(bytes));
}

std::int16_t Nombre::BytestoInt(std::span<const std::uint8_t> bytes) {
    return static_cast<std::int16_t>(fromLittleEndian<2>(bytes));
}

}  // namespace marlune
