// A host's end of a line: opens the path as a serial port. Linux.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <string>

namespace marlune::receivers {

class HostEnd {
public:
    explicit HostEnd(const std::string& path, speed_t speed = B9600)
        : fd_(::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        termios settings{};
        ::tcgetattr(fd_, &settings);
        ::cfmakeraw(&settings);
        ::cfsetospeed(&settings, speed);
        ::cfsetispeed(&settings, speed);
        ::tcsetattr(fd_, TCSANOW, &settings);
    }
    HostEnd(const HostEnd&) = delete;
    HostEnd& operator=(const HostEnd&) = delete;
    ~HostEnd() { ::close(fd_); }

    [[nodiscard]] int fd() const { return fd_; }
    void write(const std::string& text) const {
        ASSERT_EQ(::write(fd_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    // Reads until that many bytes came, the line ended or nothing came for five seconds.
    [[nodiscard]] std::string read(std::size_t count) const {
        std::string all(count, '\0');
        std::size_t got = 0;
        pollfd polled = {fd_, POLLIN, 0};
        while (got < count && ::poll(&polled, 1, 5000) == 1) {
            const ssize_t more = ::read(fd_, &all[got], count - got);
            if (more <= 0) {
                break;
            }
            got += static_cast<std::size_t>(more);
        }
        all.resize(got);
        return all;
    }

private:
    int fd_;
};

}  // namespace marlune::receivers
