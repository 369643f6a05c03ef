#include "cli/Output.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace marlune::cli {

void Output::write(std::string_view text) {
    // So much fits into a pipe that says it has room, without waiting.
    constexpr std::size_t kPiece = 4096;
    while (!broken_ && !text.empty()) {
        if (!waitForRoom()) {
            broken_ = true;
            return;
        }
        const ssize_t taken = ::write(descriptor_, text.data(), std::min(text.size(), kPiece));
        if (taken >= 0) {
            text.remove_prefix(static_cast<std::size_t>(taken));
        } else if (errno != EINTR && errno != EAGAIN) {
            broken_ = true;
            error_ = errno == EPIPE ? 0 : errno;
        }
    }
}

// Waits until the reader takes more. After a request to end it has to be ready.
bool Output::waitForRoom() {
    for (;;) {
        std::array<pollfd, 2> ends = {pollfd{descriptor_, POLLOUT, 0},
                                      pollfd{interrupt_.descriptor(), POLLIN, 0}};
        const bool ending = interrupt_.requested();
        if (poll(ends.data(), ending ? 1 : ends.size(), ending ? 0 : -1) < 0 && errno != EINTR) {
            return false;
        }
        if (ends[0].revents != 0) {
            return true;
        }
        if (ending) {
            return false;
        }
    }
}

void Output::checkReader() {
    pollfd end{descriptor_, 0, 0};
    if (poll(&end, 1, 0) > 0 && (end.revents & (POLLERR | POLLNVAL)) != 0) {
        broken_ = true;
    }
}

}  // namespace marlune::cli
