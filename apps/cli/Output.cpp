#include "cli/Output.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace marlune::cli {

Output::Output(int descriptor, const Interrupt& interrupt)
    : descriptor_(descriptor), terminal_(isatty(descriptor) == 1), interrupt_(interrupt) {}

void Output::writeForeign(std::string_view text) {
    write(terminal_ ? visible(text) : std::string(text));
}

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

std::string visible(std::string_view text) {
    constexpr char kDelete = '\x7F';
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        // C2 80 to C2 9F, which terminals obey like ESC and a letter.
        const bool upperControl =
            byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
        if (upperControl) {
            out += '?';
            ++i;
        } else if ((byte < 0x20 && byte != '\n') || text[i] == kDelete) {
            out += '^';
            out += static_cast<char>(byte ^ 0x40U);
        } else {
            out += text[i];
        }
    }
    return out;
}

}  // namespace marlune::cli
