#include "support/Pty.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <system_error>

namespace marlune {
namespace {

void require(bool done, const char* what) {
    if (!done) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

}  // namespace

Pty::Pty() : master_(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
    require(master_ >= 0, "posix_openpt");
    require(::grantpt(master_) == 0 && ::unlockpt(master_) == 0, "unlockpt");
    std::array<char, 128> name{};
    require(::ptsname_r(master_, name.data(), name.size()) == 0, "ptsname_r");
    slavePath_ = name.data();
    // On Linux the master's attributes are the slave's.
    termios line{};
    require(::tcgetattr(master_, &line) == 0, "tcgetattr");
    ::cfmakeraw(&line);
    require(::tcsetattr(master_, TCSANOW, &line) == 0, "tcsetattr");
}

Pty::~Pty() {
    hangUp();
}

std::size_t Pty::write(std::span<const std::uint8_t> bytes) const {
    std::size_t count = 0;
    while (count < bytes.size()) {
        const ssize_t step = ::write(master_, bytes.data() + count, bytes.size() - count);
        if (step > 0) {
            count += static_cast<std::size_t>(step);
        } else if (errno != EAGAIN || !waitFor(POLLOUT)) {
            break;
        }
    }
    return count;
}

std::vector<std::uint8_t> Pty::read(std::size_t count) const {
    std::vector<std::uint8_t> bytes(count);
    std::size_t length = 0;
    while (length < count && waitFor(POLLIN)) {
        const ssize_t step = ::read(master_, bytes.data() + length, count - length);
        if (step <= 0) {
            break;
        }
        length += static_cast<std::size_t>(step);
    }
    bytes.resize(length);
    return bytes;
}

std::vector<std::uint8_t> Pty::readArrived() const {
    std::array<std::uint8_t, 4096> chunk{};
    std::vector<std::uint8_t> bytes;
    for (;;) {
        const ssize_t step = ::read(master_, chunk.data(), chunk.size());
        if (step <= 0) {
            return bytes;
        }
        bytes.insert(bytes.end(), chunk.begin(), chunk.begin() + step);
    }
}

void Pty::hangUp() {
    if (master_ >= 0) {
        ::close(master_);
        master_ = -1;
    }
}

bool Pty::waitFor(short events) const {
    pollfd wait{master_, events, 0};
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(kPatienceMilliseconds);
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            end - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            return false;
        }
        const int ready = ::poll(&wait, 1, static_cast<int>(left.count()));
        if (ready > 0) {
            return (wait.revents & events) != 0;
        }
        if (ready == 0 || errno != EINTR) {
            return false;
        }
    }
}

}  // namespace marlune
