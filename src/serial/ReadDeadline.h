// How long a read of the serial line may wait: the first byte within 1000 ms + 100 ms per byte
// asked, then 100 ms from one byte to the next, all of it within that first span.
#pragma once

#include <chrono>
#include <cstddef>

namespace marlune {

class ReadDeadline {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    ReadDeadline(TimePoint start, std::size_t asked);

    // Bytes came: the next one is due within the gap.
    void arrived(TimePoint now);

    // Whole milliseconds, rounded up so that a wait of that length never ends early; 0 when the
    // time is over.
    [[nodiscard]] std::chrono::milliseconds left(TimePoint now) const;

private:
    TimePoint end_;
    TimePoint due_;
};

}  // namespace marlune
