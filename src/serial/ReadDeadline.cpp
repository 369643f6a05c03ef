#include "serial/ReadDeadline.h"

#include <algorithm>

namespace marlune {

using std::chrono::milliseconds;

ReadDeadline::ReadDeadline(TimePoint start, std::size_t asked)
    : end_(start + milliseconds(1000) + milliseconds(100) * static_cast<std::int64_t>(asked)),
      due_(end_) {}

void ReadDeadline::arrived(TimePoint now) {
    due_ = std::min(end_, now + milliseconds(100));
}

milliseconds ReadDeadline::left(TimePoint now) const {
    return std::max(std::chrono::ceil<milliseconds>(due_ - now), milliseconds(0));
}

}  // namespace marlune
