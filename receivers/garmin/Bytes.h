// Little-endian records, written and read field by field in their order on the wire. Texts are
// UTF-8 outside and Windows-1252 inside.
#pragma once

#include <algorithm>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "base/CodePage.h"

namespace marlune::receivers::garmin {

// Stands for "unknown" in altitudes, depths and distances.
inline constexpr float kUnknown = 1.0e25F;

class ByteWriter {
public:
    template <std::integral T>
    ByteWriter& number(T value) {
        auto bits = static_cast<std::make_unsigned_t<T>>(value);
        for (std::size_t at = 0; at < sizeof value; ++at) {
            bytes_.push_back(static_cast<std::uint8_t>(bits & 0xFFU));
            bits = static_cast<decltype(bits)>(static_cast<std::uint64_t>(bits) >> 8U);
        }
        return *this;
    }
    ByteWriter& number(float value) { return number(std::bit_cast<std::uint32_t>(value)); }
    ByteWriter& number(double value) { return number(std::bit_cast<std::uint64_t>(value)); }

    ByteWriter& u8(int value) { return number(static_cast<std::uint8_t>(value)); }
    ByteWriter& u16(int value) { return number(static_cast<std::uint16_t>(value)); }
    ByteWriter& fill(int value, std::size_t count) {
        bytes_.insert(bytes_.end(), count, static_cast<std::uint8_t>(value));
        return *this;
    }
    // A field of fixed width: cut, or padded with blanks.
    ByteWriter& text(const std::string& utf8, std::size_t width) {
        std::string ansi = toAnsi(utf8);
        ansi.resize(width, ' ');
        bytes_.insert(bytes_.end(), ansi.begin(), ansi.end());
        return *this;
    }
    // A zero-terminated text of at most that many characters.
    ByteWriter& zeroText(const std::string& utf8, std::size_t longest) {
        const std::string ansi = toAnsi(utf8).substr(0, longest);
        bytes_.insert(bytes_.end(), ansi.begin(), ansi.end());
        return fill(0, 1);
    }

    std::vector<std::uint8_t> take() { return std::move(bytes_); }

private:
    std::vector<std::uint8_t> bytes_;
};

// Every read past the end throws std::out_of_range.
class ByteReader {
public:
    explicit ByteReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    template <std::integral T>
    T number() {
        std::uint64_t bits = 0;
        const std::span<const std::uint8_t> field = next(sizeof(T));
        for (std::size_t at = sizeof(T); at-- > 0;) {
            bits = bits << 8U | field[at];
        }
        return static_cast<T>(bits);
    }
    float single() { return std::bit_cast<float>(number<std::uint32_t>()); }
    int u8() { return number<std::uint8_t>(); }
    int u16() { return number<std::uint16_t>(); }
    void skip(std::size_t count) { next(count); }

    // A field of fixed width, up to its first zero byte, without the blanks around it.
    std::string text(std::size_t width) { return upToZero(next(width)); }
    // A text up to its zero byte or the record's end.
    std::string zeroText() {
        const std::string_view rest(reinterpret_cast<const char*>(bytes_.data()) + at_, left());
        const std::size_t length = std::min(rest.find('\0'), rest.size());
        std::string text = upToZero(next(length));
        at_ += left() > 0 ? 1 : 0;
        return text;
    }

    [[nodiscard]] std::size_t left() const { return bytes_.size() - at_; }

private:
    std::span<const std::uint8_t> next(std::size_t count) {
        if (count > left()) {
            throw std::out_of_range("ends too early");
        }
        at_ += count;
        return bytes_.subspan(at_ - count, count);
    }
    static std::string upToZero(std::span<const std::uint8_t> field) {
        const std::string ansi(field.begin(), field.end());
        return fromAnsi(trimBlanks(std::string_view(ansi).substr(0, ansi.find('\0'))));
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t at_ = 0;
};

}  // namespace marlune::receivers::garmin
