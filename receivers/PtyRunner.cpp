#include "receivers/PtyRunner.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <ctime>
#include <system_error>
#include <utility>

namespace marlune::receivers {
namespace {

// A receiver prepares no more than about this many bytes ahead of the line. Paced, so that it can
// still be stopped; unpaced, so that a host that does not read cannot fill the memory.
constexpr std::size_t kAheadPaced = 64;
constexpr std::size_t kAheadUnpaced = 65536;

// In seconds: how long a host may take to read what was said last before a hang-up, and how often
// to look.
constexpr double kLongestReading = 2;
constexpr double kReadingSlice = 0.002;

}  // namespace

PtyRunner::PtyRunner(std::unique_ptr<VirtualReceiver> receiver, const Options& options)
    : receiver_(std::move(receiver)),
      line_(receiver_->baud(), options.link),
      pacer_(options.paced),
      firstBaud_(receiver_->baud()),
      mindsSpeed_(options.paced),
      mostAhead_(options.paced ? kAheadPaced : kAheadUnpaced),
      wake_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (wake_ < 0) {
        throw std::system_error(errno, std::generic_category(), "no event descriptor");
    }
}

PtyRunner::~PtyRunner() {
    stop();
    if (thread_.joinable()) {
        thread_.join();
    }
    ::close(wake_);
}

double PtyRunner::clock() {
    const auto since = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(since).count();
}

void PtyRunner::start() {
    thread_ = std::thread([this] { run(); });
}

void PtyRunner::stop() {
    stopping_ = true;
    const std::uint64_t one = 1;
    // The counter cannot overflow, so this cannot fail in a way that matters.
    [[maybe_unused]] const ssize_t written = ::write(wake_, &one, sizeof one);
}

std::vector<std::string> PtyRunner::lines() const {
    const std::scoped_lock lock(mutex_);
    return receiver_->lines();
}

std::vector<std::string> PtyRunner::complaints() const {
    const std::scoped_lock lock(mutex_);
    return receiver_->complaints();
}

void PtyRunner::run() {
    serve();
    const std::scoped_lock lock(mutex_);
    receiver_->end();
}

void PtyRunner::serve() {
    {
        // A stream may be due before anything is heard.
        const std::scoped_lock lock(mutex_);
        receiver_->elapse(clock());
        queueSaid(clock());
    }
    while (!stopping_) {
        wait();
        listen();
        speak();
        if (mayHangUp()) {
            line_.hangUp();
            return;
        }
    }
}

// Hanging up takes away what the host has not read yet, so it is given time to.
bool PtyRunner::mayHangUp() {
    if (!receiver_->hungUp() || pacer_.backlog() > 0 || !unwritten_.empty()) {
        return false;
    }
    const double now = clock();
    hangUpDue_ = hangUpDue_.value_or(now + kLongestReading);
    return now >= *hangUpDue_ || !line_.hasUnread();
}

std::optional<double> PtyRunner::nextWake() const {
    std::optional<double> wake = pacer_.due();
    if (!unwritten_.empty()) {
        wake.reset();  // the pty's room decides
    }
    const std::optional<double> deadline = receiver_->nextDeadline();
    if (deadline && !isClogged()) {
        wake = wake ? std::min(*wake, *deadline) : *deadline;
    }
    if (hangUpDue_) {
        const double look = clock() + kReadingSlice;
        wake = std::min(wake.value_or(look), look);
    }
    return wake;
}

void PtyRunner::wait() {
    const auto input = static_cast<short>(unwritten_.empty() ? POLLIN : POLLIN | POLLOUT);
    std::array<pollfd, 3> polled = {
        {{line_.lineFd(), input, 0}, {wake_, POLLIN, 0}, {line_.watchFd(), POLLIN, 0}}};
    timespec limit{};
    const std::optional<double> wake = nextWake();
    if (wake) {
        const double seconds = std::clamp(*wake - clock(), 0.0, 3600.0);
        limit.tv_sec = static_cast<time_t>(seconds);
        limit.tv_nsec = static_cast<long>((seconds - std::floor(seconds)) * 1e9);
    }
    ::ppoll(polled.data(), polled.size(), wake ? &limit : nullptr, nullptr);
}

void PtyRunner::listen() {
    heard_.clear();
    line_.read(heard_);
    const std::scoped_lock lock(mutex_);
    const double now = clock();
    if (!heard_.empty()) {
        makeNoiseUnless(line_.mayHaveRead(receiver_->baud()), heard_);
        receiver_->hear(heard_, now);
    }
    const std::optional<double> deadline = receiver_->nextDeadline();
    if (deadline && *deadline <= now && !isClogged()) {
        receiver_->elapse(now);
    }
    queueSaid(now);
}

void PtyRunner::queueSaid(double now) {
    std::vector<Said> said = receiver_->takeSaid();
    for (const Said& piece : said) {
        noteSpeed(piece.baud);
    }
    noteSpeed(receiver_->baud());
    pacer_.add(std::move(said), now);
}

void PtyRunner::speak() {
    if (unwritten_.empty()) {
        for (Said& piece : pacer_.take(clock())) {
            makeNoiseUnless(line_.speed() == piece.baud, piece.bytes);
            unwritten_.insert(unwritten_.end(), piece.bytes.begin(), piece.bytes.end());
        }
    }
    if (!unwritten_.empty()) {
        const std::size_t count = line_.write(unwritten_);
        unwritten_.erase(unwritten_.begin(),
                         unwritten_.begin() + static_cast<std::ptrdiff_t>(count));
    }
}

void PtyRunner::makeNoiseUnless(bool speedsAgree, std::vector<std::uint8_t>& bytes) {
    if (speedsAgree || !mindsSpeed_) {
        return;
    }
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(noise_() >> 8U);
    }
}

}  // namespace marlune::receivers
