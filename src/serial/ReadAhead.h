// What was read from the line but not asked for yet. Fixed memory; a read of one byte costs a
// comparison and a copy.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace marlune {

class ReadAhead {
public:
    [[nodiscard]] bool empty() const { return first_ == last_; }
    [[nodiscard]] std::size_t size() const { return last_ - first_; }

    // Moves as many bytes as there are into the beginning of `into`; returns their number.
    std::size_t take(std::span<std::uint8_t> into) {
        const std::size_t count = std::min(into.size(), last_ - first_);
        if (count == 1) {
            into[0] = bytes_[first_];
        } else {
            std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(first_), count, into.begin());
        }
        first_ += count;
        return count;
    }

    // The memory that an empty buffer fills from; filled() then tells how much of it was used.
    [[nodiscard]] std::span<std::uint8_t> space() { return bytes_; }
    void filled(std::size_t count) {
        first_ = 0;
        last_ = count;
    }

    void clear() { filled(0); }

private:
    // The kernel's own input queue of a terminal holds 4096 bytes.
    std::array<std::uint8_t, 4096> bytes_{};
    std::size_t first_ = 0;
    std::size_t last_ = 0;
};

}  // namespace marlune
