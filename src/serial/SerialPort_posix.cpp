// Serial ports on Linux terminals.
//
// A read waits in the kernel, where the line's own timer ends it after 100 ms; between two such
// reads the host is asked whether to stop. That timer is coarse, so the last stretch of a time-out
// is a poll(). Writes never block: they have a descriptor of their own.
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

#include "marlune/Host.h"
#include "serial/LineSettings.h"
#include "serial/ReadAhead.h"
#include "serial/ReadDeadline.h"
#include "serial/SerialPort.h"
#include "serial/TerminalLine_linux.h"

namespace marlune {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kSlice(50);
// A read that has so much time left may use up the line's timer.
constexpr milliseconds kTimedRead(200);

class SystemSerialPort : public SerialPort {
public:
    explicit SystemSerialPort(Host& host) : host_(host) {}
    SystemSerialPort(const SystemSerialPort&) = delete;
    SystemSerialPort& operator=(const SystemSerialPort&) = delete;
    ~SystemSerialPort() override { release(); }

    std::int32_t open(const std::string& device, const std::string& settings,
                      QueueSizes queues) override;
    void close() override;
    [[nodiscard]] std::int64_t handle() const override { return handle_; }
    [[nodiscard]] bool isGone() const override { return gone_ && ahead_.empty(); }
    std::size_t read(std::span<std::uint8_t> into) override;
    [[nodiscard]] std::size_t available() const override { return ahead_.size(); }
    std::size_t write(std::span<const std::uint8_t> bytes) override;
    void settle() override;
    void purge() override;

private:
    // What one look at the descriptor brought.
    enum class Outcome { moved, nothingYet, gone };

    std::int32_t openBoth(const std::string& device);
    void release();
    std::size_t readWaiting(std::span<std::uint8_t> into, std::size_t count);
    Outcome readAhead(milliseconds longest);
    Outcome outcomeOf(ssize_t moved);
    bool arrives(short events, milliseconds longest);
    bool waitFor(short events, milliseconds longest);

    Host& host_;
    ReadAhead ahead_;
    int reader_ = -1;
    int writer_ = -1;
    std::int64_t handle_ = -1;           // outlives the descriptors when a setting was refused
    bool gone_ = true;                   // nothing can arrive any more
    bool hungUp_ = false;                // poll() said so; what has arrived is still read
    steady_clock::time_point lastMove_;  // of bytes in either direction; long ago at first
};

// Opens the device without waiting for it, or for its carrier. Returns the descriptor, never 0,
// which would read as closed; or -1 and errno.
int openDevice(const std::string& device, int access) {
    int descriptor = -1;
    do {
        descriptor = ::open(device.c_str(), access | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor == 0) {
        descriptor = ::fcntl(0, F_DUPFD_CLOEXEC, 1);
        const int error = errno;
        ::close(0);
        errno = error;
    }
    return descriptor;
}

// The same device once more, for reads that wait. Returns -1 and errno as above.
int openReader(const std::string& device) {
    const int descriptor = openDevice(device, O_RDONLY);
    if (descriptor >= 0 && ::fcntl(descriptor, F_SETFL, 0) != 0) {
        const int error = errno;
        ::close(descriptor);
        errno = error;
        return -1;
    }
    return descriptor;
}

// Takes a terminal for this program alone. A lock besides the terminal's own exclusive mode,
// because the kernel lets an administrator pass that.
std::int32_t lockTerminal(int descriptor) {
    if (::isatty(descriptor) == 0) {
        return errno;
    }
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        return errno == EWOULDBLOCK ? EBUSY : errno;
    }
    return 0;
}

// The queue sizes are advice to a driver that has queues of its own; the terminals of Linux have
// theirs fixed, and larger.
std::int32_t SystemSerialPort::open(const std::string& device, const std::string& settings,
                                    QueueSizes /*queues*/) {
    close();
    if (const std::int32_t error = openBoth(device); error != 0) {
        release();
        return error;
    }
    handle_ = writer_;
    const auto line = parseLineSettings(settings);
    const std::int32_t refused = line ? applyLineSettings(writer_, *line) : EINVAL;
    if (refused != 0) {
        release();  // handle_ keeps its value
        return refused;
    }
    gone_ = false;
    lastMove_ = {};
    return 0;
}

std::int32_t SystemSerialPort::openBoth(const std::string& device) {
    writer_ = openDevice(device, O_RDWR);
    if (writer_ < 0) {
        return errno;
    }
    if (const std::int32_t error = lockTerminal(writer_); error != 0) {
        return error;
    }
    // Before the terminal is exclusive: then nobody can open it any more.
    reader_ = openReader(device);
    return reader_ < 0 || ::ioctl(writer_, TIOCEXCL) != 0 ? errno : 0;
}

void SystemSerialPort::close() {
    release();
    handle_ = -1;
}

void SystemSerialPort::release() {
    ahead_.clear();
    gone_ = true;
    hungUp_ = false;
    if (reader_ >= 0) {
        ::close(reader_);
        // A pseudo terminal would stay exclusive as long as its other end lives.
        ::ioctl(writer_, TIOCNXCL);
    }
    if (writer_ >= 0) {
        ::close(writer_);
    }
    reader_ = -1;
    writer_ = -1;
}

std::size_t SystemSerialPort::read(std::span<std::uint8_t> into) {
    const std::size_t count = ahead_.take(into);
    return count == into.size() || gone_ ? count : readWaiting(into, count);
}

std::size_t SystemSerialPort::readWaiting(std::span<std::uint8_t> into, std::size_t count) {
    ReadDeadline deadline(steady_clock::now(), into.size());
    if (count > 0) {
        deadline.arrived(steady_clock::now());
    }
    while (count < into.size() && !gone_) {
        // A stop ends the wait, not the reading of what is here.
        const auto start = steady_clock::now();
        const milliseconds left = host_.stopRequested() ? milliseconds(0) : deadline.left(start);
        const Outcome outcome = readAhead(left);
        if (outcome == Outcome::moved) {
            deadline.arrived(lastMove_);
            count += ahead_.take(into.subspan(count));
            host_.bytesCame();
        } else if (left.count() == 0) {
            break;
        } else {
            const std::chrono::duration<double> waited = steady_clock::now() - start;
            host_.waitedForBytes(waited.count());
        }
    }
    return count;
}

// Reads what is here. Waits for it no longer than so, and for a slice only.
SystemSerialPort::Outcome SystemSerialPort::readAhead(milliseconds longest) {
    if (longest < kTimedRead && !arrives(POLLIN, longest)) {
        return Outcome::nothingYet;
    }
    const std::span<std::uint8_t> space = ahead_.space();
    const ssize_t moved = ::read(reader_, space.data(), space.size());
    if (moved == 0) {
        // The line's timer, unless the line has hung up.
        (void)arrives(POLLIN, milliseconds(0));
    }
    const Outcome outcome = outcomeOf(moved);
    if (outcome == Outcome::moved) {
        ahead_.filled(static_cast<std::size_t>(moved));
    }
    return outcome;
}

std::size_t SystemSerialPort::write(std::span<const std::uint8_t> bytes) {
    std::size_t count = 0;
    while (count < bytes.size() && !gone_) {
        const ssize_t moved = ::write(writer_, bytes.data() + count, bytes.size() - count);
        const Outcome outcome = outcomeOf(moved);
        if (outcome == Outcome::moved) {
            count += static_cast<std::size_t>(moved);
        } else if (outcome == Outcome::nothingYet && !waitFor(POLLOUT, kSlice)) {
            break;
        }
    }
    return count;
}

// Every error but "not now" means that the device was pulled out.
SystemSerialPort::Outcome SystemSerialPort::outcomeOf(ssize_t moved) {
    if (moved > 0) {
        lastMove_ = steady_clock::now();
        return Outcome::moved;
    }
    const bool notNow = moved == 0 || errno == EAGAIN || errno == EINTR;
    if (notNow && !hungUp_) {
        return Outcome::nothingYet;
    }
    gone_ = true;
    return Outcome::gone;
}

// Waits one slice at most. Also true when the line has hung up.
bool SystemSerialPort::arrives(short events, milliseconds longest) {
    pollfd wait{reader_, events, 0};
    if (::poll(&wait, 1, static_cast<int>(std::min(longest, kSlice).count())) <= 0) {
        return false;
    }
    hungUp_ = (wait.revents & (POLLERR | POLLHUP | POLLNVAL)) != 0;
    return true;
}

// Waits one slice at most; false when the wait is over: no time left, or a stop is requested.
bool SystemSerialPort::waitFor(short events, milliseconds longest) {
    if (longest.count() == 0 || host_.stopRequested()) {
        return false;
    }
    (void)arrives(events, longest);
    return true;
}

void SystemSerialPort::settle() {
    constexpr milliseconds kQuiet(100);
    constexpr milliseconds kLongest(500);
    const auto end = steady_clock::now() + kLongest;
    for (auto now = steady_clock::now(); !gone_; now = steady_clock::now()) {
        const auto left = std::min(lastMove_ + kQuiet, end) - now;
        if (left <= left.zero()) {
            return;
        }
        if (readAhead(milliseconds(0)) == Outcome::nothingYet &&
            !waitFor(POLLIN, std::chrono::ceil<milliseconds>(left))) {
            return;
        }
        ahead_.clear();
    }
}

void SystemSerialPort::purge() {
    ahead_.clear();
    if (writer_ >= 0) {
        // Input only. A write counts as done when it returns, so nothing of it may be lost: a
        // pseudo terminal would drop what its other end has not read yet, the last acknowledgement
        // of a transfer for one.
        (void)::tcflush(writer_, TCIFLUSH);
    }
}

}  // namespace

std::unique_ptr<SerialPort> makeSystemSerialPort(Host& host) {
    return std::make_unique<SystemSerialPort>(host);
}

}  // namespace marlune
