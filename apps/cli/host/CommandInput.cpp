#include "cli/host/CommandInput.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace marlune::cli {

std::optional<InputLine> CommandInput::next() {
    auto line = lines_.next();
    while (!line && read()) {
        line = lines_.next();
    }
    return line;
}

void CommandInput::wait(const Interrupt& interrupt, const Output& output) const {
    // The output's end asks for nothing: an error is always told.
    std::array<pollfd, 3> ends = {pollfd{descriptor_, POLLIN, 0},
                                  pollfd{interrupt.descriptor(), POLLIN, 0},
                                  pollfd{output.descriptor(), 0, 0}};
    poll(ends.data(), ends.size(), -1);
}

// Takes what waits in the descriptor. False when nothing does, or nothing ever will.
bool CommandInput::read() {
    pollfd end{descriptor_, POLLIN, 0};
    if (ended_ || poll(&end, 1, 0) <= 0) {
        return false;
    }
    std::array<char, 65536> block{};
    const ssize_t count = ::read(descriptor_, block.data(), block.size());
    if (count > 0) {
        lines_.feed({block.data(), static_cast<std::size_t>(count)});
        return true;
    }
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
        return false;
    }
    lines_.finish();
    ended_ = true;
    return true;
}

}  // namespace marlune::cli
