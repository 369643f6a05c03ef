#include "cli/Progress.h"

namespace marlune::cli {

Progress::Progress(Output& output) : output_(output), terminal_(output.isTerminal()) {}

void Progress::begin(std::int16_t records) {
    running_ = true;
    records_ = records;
}

void Progress::advance(std::size_t done) {
    if (terminal_ && running_) {
        shown_ = true;
        output_.write("\r" + std::to_string(done) + " / " + std::to_string(records_) + "\x1B[K");
    }
}

void Progress::end() {
    clear();
    running_ = false;
}

void Progress::clear() {
    if (shown_) {
        shown_ = false;
        output_.write("\r\x1B[K");
    }
}

}  // namespace marlune::cli
