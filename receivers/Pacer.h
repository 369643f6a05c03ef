// Lets bytes out as fast as a serial line carries them: ten bits a byte (start, eight, stop) at the
// speed at which each was said. Unpaced, everything is out at once. Memory only; times are the
// caller's, in seconds.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <vector>

#include "receivers/VirtualReceiver.h"

namespace marlune::receivers {

class Pacer {
public:
    explicit Pacer(bool paced) : paced_(paced) {}

    // Queues what was said at that moment.
    void add(std::vector<Said> said, double now);

    // What has crossed the line by now, in pieces of one speed each.
    std::vector<Said> take(double now);

    // When take() should be called next; nothing when the line is idle. Small groups of bytes are
    // let out together, but the last byte of what is queued comes on its own time.
    [[nodiscard]] std::optional<double> due() const;

    // Bytes that have not crossed the line yet.
    [[nodiscard]] std::size_t backlog() const { return backlog_; }

private:
    static double byteTime(const Said& piece);
    Said takeFront(std::size_t count);

    bool paced_;
    std::deque<Said> queue_;
    std::size_t taken_ = 0;  // bytes of the front piece that are out
    std::size_t backlog_ = 0;
    double begun_ = 0;  // when the next byte to come out started
};

}  // namespace marlune::receivers
