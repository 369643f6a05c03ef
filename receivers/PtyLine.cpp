#include "receivers/PtyLine.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

namespace marlune::receivers {
namespace {

struct Speed {
    int baud;
    speed_t code;
};

constexpr Speed kSpeeds[] = {
    {300, B300},     {600, B600},       {1200, B1200},     {2400, B2400},
    {4800, B4800},   {9600, B9600},     {19200, B19200},   {38400, B38400},
    {57600, B57600}, {115200, B115200}, {230400, B230400},
};

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

speed_t codeOf(int baud) {
    const auto* const found = std::find_if(std::begin(kSpeeds), std::end(kSpeeds),
                                           [=](const Speed& each) { return each.baud == baud; });
    return found == std::end(kSpeeds) ? B9600 : found->code;
}

int openMaster() {
    const int fd = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) {
        fail("no pseudo-terminal");
    }
    if (::grantpt(fd) != 0 || ::unlockpt(fd) != 0) {
        const int error = errno;
        ::close(fd);
        errno = error;
        fail("no pseudo-terminal");
    }
    return fd;
}

std::string slaveName(int master) {
    std::array<char, 128> name{};
    if (::ptsname_r(master, name.data(), name.size()) != 0) {
        fail("no pseudo-terminal");
    }
    return name.data();
}

}  // namespace

PtyLine::PtyLine(int baud, std::string link) : master_(openMaster()) {
    try {
        path_ = slaveName(master_);
        slave_ = ::open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
        if (slave_ < 0) {
            fail(path_);
        }
        termios settings{};
        ::tcgetattr(slave_, &settings);
        ::cfmakeraw(&settings);
        ::cfsetispeed(&settings, codeOf(baud));
        ::cfsetospeed(&settings, codeOf(baud));
        ::tcsetattr(slave_, TCSANOW, &settings);
        watchOpenings();
        if (!link.empty()) {
            link_ = std::move(link);
            makeLink();
        }
    } catch (...) {
        closeAll();
        throw;
    }
}

PtyLine::~PtyLine() {
    closeAll();
    std::error_code ignored;
    if (!link_.empty() && std::filesystem::read_symlink(link_, ignored) == path_) {
        std::filesystem::remove(link_, ignored);
    }
}

void PtyLine::watchOpenings() {
    watch_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (watch_ >= 0 && ::inotify_add_watch(watch_, path_.c_str(), IN_OPEN | IN_CLOSE) < 0) {
        ::close(watch_);
        watch_ = -1;
    }
}

void PtyLine::makeLink() {
    std::error_code ignored;
    if (std::filesystem::is_symlink(link_, ignored)) {
        std::filesystem::remove(link_, ignored);
    }
    if (::symlink(path_.c_str(), link_.c_str()) != 0) {
        fail(std::exchange(link_, {}));
    }
}

int PtyLine::speed() const {
    termios settings{};
    // Asked of the master, the kernel tells the settings of the other end.
    if (::tcgetattr(master_, &settings) != 0) {
        return 0;
    }
    const speed_t code = ::cfgetospeed(&settings);
    const auto* const found = std::find_if(std::begin(kSpeeds), std::end(kSpeeds),
                                           [=](const Speed& each) { return each.code == code; });
    return found == std::end(kSpeeds) ? 0 : found->baud;
}

void PtyLine::noteOpenings() {
    alignas(inotify_event) std::array<char, 4096> events{};
    ssize_t got = 0;
    while (watch_ >= 0 && (got = ::read(watch_, events.data(), events.size())) > 0) {
        const auto size = static_cast<std::size_t>(got);
        for (std::size_t at = 0; at + sizeof(inotify_event) <= size;) {
            inotify_event event{};
            std::memcpy(&event, &events[at], sizeof event);
            at += sizeof event + event.len;
            closed_ |= (event.mask & IN_CLOSE) != 0;
            openings_ += (event.mask & IN_OPEN) != 0 ? 1 : 0;
            openings_ -= (event.mask & IN_CLOSE) != 0 && openings_ > 0 ? 1 : 0;
            if (openings_ == 0) {
                // The last host has gone: as with a real port, what it left unread and its
                // exclusive use go with it.
                ::tcflush(slave_, TCIFLUSH);
                ::ioctl(slave_, TIOCNXCL);
            }
        }
    }
}

std::size_t PtyLine::read(std::vector<std::uint8_t>& into) {
    std::size_t count = 0;
    wasClosed_ = false;
    // Noticing comes after the taking: the opening that these bytes came through, and the closing
    // before it, are known by now, so nothing that answers them is taken for a former host's
    // leavings. And a closing may be noticed whose host wrote after the taking: taken once more,
    // these bytes do not come up later as those of the next host, at its speed.
    do {
        wasClosed_ = std::exchange(closed_, false) || wasClosed_;
        count += takeAll(into);
        noteOpenings();
    } while (closed_);
    return count;
}

// The kernel passes on what was written before it says that there is nothing.
std::size_t PtyLine::takeAll(std::vector<std::uint8_t>& into) const {
    std::array<std::uint8_t, 4096> bytes{};
    std::size_t count = 0;
    ssize_t got = 0;
    while (master_ >= 0 && (got = ::read(master_, bytes.data(), bytes.size())) > 0) {
        into.insert(into.end(), bytes.begin(), bytes.begin() + got);
        count += static_cast<std::size_t>(got);
    }
    return count;
}

bool PtyLine::mayHaveRead(int baud) const {
    return wasClosed_ || speed() == baud;
}

std::size_t PtyLine::write(std::span<const std::uint8_t> bytes) const {
    if (master_ < 0 || (watch_ >= 0 && openings_ == 0)) {
        return bytes.size();
    }
    const ssize_t put = ::write(master_, bytes.data(), bytes.size());
    return put < 0 ? 0 : static_cast<std::size_t>(put);
}

bool PtyLine::hasUnread() const {
    // Not FIONREAD, which does not count what the kernel is still passing on.
    pollfd input{slave_, POLLIN, 0};
    return slave_ >= 0 && ::poll(&input, 1, 0) > 0;
}

void PtyLine::hangUp() {
    closeAll();
}

void PtyLine::closeAll() {
    for (int* fd : {&watch_, &slave_, &master_}) {
        if (*fd >= 0) {
            ::close(*fd);
            *fd = -1;
        }
    }
}

}  // namespace marlune::receivers
