#include "PtyDevice.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <new>
#include <system_error>
#include <thread>

namespace marlune::bench {
namespace {

void require(bool done, const char* what) {
    if (!done) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

// A master whose line is raw.
int openMaster(std::string& path) {
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    require(master >= 0, "posix_openpt");
    std::array<char, 128> name{};
    require(::grantpt(master) == 0 && ::unlockpt(master) == 0 &&
                ::ptsname_r(master, name.data(), name.size()) == 0,
            "unlockpt");
    path = name.data();
    termios line{};
    require(::tcgetattr(master, &line) == 0, "tcgetattr");
    ::cfmakeraw(&line);
    require(::tcsetattr(master, TCSANOW, &line) == 0, "tcsetattr");
    return master;
}

// A real line: every byte takes its time, the host's as well as the device's.
class SlowLine {
public:
    SlowLine(int line, std::uint32_t baud) : line_(line), byteNanoseconds_(kTenBits / baud) {}

    bool hear(std::span<std::uint8_t> into) {
        if (!readAll(line_, into)) {
            return false;
        }
        // On a pty they came all at once.
        ::clock_gettime(CLOCK_MONOTONIC, &busyUntil_);
        later(into.size());
        return true;
    }

    bool say(std::span<const std::uint8_t> bytes) {
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            later(1);
            ::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &busyUntil_, nullptr);
            if (!writeAll(line_, bytes.subspan(i, 1))) {
                return false;
            }
        }
        return true;
    }

private:
    static constexpr std::int64_t kSecond = 1'000'000'000;
    static constexpr std::int64_t kTenBits = 10 * kSecond;

    void later(std::size_t bytes) {
        const std::int64_t nanoseconds =
            busyUntil_.tv_nsec + static_cast<std::int64_t>(bytes) * byteNanoseconds_;
        busyUntil_.tv_sec += nanoseconds / kSecond;
        busyUntil_.tv_nsec = nanoseconds % kSecond;
    }

    int line_;
    std::int64_t byteNanoseconds_;
    timespec busyUntil_{};
};

bool play(int line, const Exchange& exchange, std::uint32_t baud) {
    std::array<std::uint8_t, 64> heard{};
    SlowLine slow(line, baud == 0 ? 1 : baud);
    for (std::size_t i = 0; i < exchange.size(); ++i) {
        const Exchange::Turn turn = exchange.turn(i);
        const std::span<std::uint8_t> into = std::span(heard).first(turn.heard);
        const bool done = baud == 0 ? readAll(line, into) && writeAll(line, turn.said)
                                    : slow.hear(into) && slow.say(turn.said);
        if (!done) {
            return false;
        }
    }
    return true;
}

std::atomic<std::uint32_t>* sharedCounter() {
    using Counter = std::atomic<std::uint32_t>;
    void* const memory =
        ::mmap(nullptr, sizeof(Counter), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    require(memory != MAP_FAILED, "mmap");
    return new (memory) Counter(0);
}

[[noreturn]] void runDevice(int master, const PtyDevice::Part& part,
                            std::atomic<std::uint32_t>& finished) {
    // Ends with the program, whatever ends that.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const Exchange opening = part.opening ? part.opening() : Exchange();
    const Exchange download = part.download();
    // A byte tells that the device is ready.
    const std::uint8_t ready = 1;
    bool up = writeAll(master, {&ready, 1}) && play(master, opening, 0);
    while (up) {
        ++finished;
        up = play(master, download, part.baud);
    }
    ::_exit(0);
}

}  // namespace

bool readAll(int line, std::span<std::uint8_t> into) {
    while (!into.empty()) {
        const ssize_t count = ::read(line, into.data(), into.size());
        if (count <= 0) {
            return false;
        }
        into = into.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

bool writeAll(int line, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(line, bytes.data(), bytes.size());
        if (count <= 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

PtyDevice::PtyDevice(const Part& part) : finished_(sharedCounter()) {
    const int master = openMaster(path_);
    // The device's process keeps it open as well, so that the line stays up without a host.
    const int slave = ::open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    require(slave >= 0, "open");
    process_ = ::fork();
    require(process_ >= 0, "fork");
    if (process_ == 0) {
        runDevice(master, part, *finished_);
    }
    std::array<std::uint8_t, 1> ready{};
    const bool isUp = readAll(slave, ready);
    ::close(master);
    ::close(slave);
    require(isUp, "the device's process");
}

PtyDevice::~PtyDevice() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    ::munmap(finished_, sizeof *finished_);
}

void PtyDevice::awaitDownloads(std::uint32_t count) const {
    while (*finished_ < count + 1) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

double PtyDevice::processorSeconds() const {
    clockid_t clock{};
    timespec used{};
    require(::clock_getcpuclockid(process_, &clock) == 0 && ::clock_gettime(clock, &used) == 0,
            "clock_getcpuclockid");
    return static_cast<double>(used.tv_sec) + 1e-9 * static_cast<double>(used.tv_nsec);
}

}  // namespace marlune::bench
