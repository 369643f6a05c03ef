#include "support/ScriptedPort.h"

#include <algorithm>
#include <utility>

#include "host/DebugTrace.h"

namespace marlune {
namespace {

// Arrivals are sums of doubles while the clock counts microseconds.
constexpr double kSameInstant = 1e-7;
// A waiting read asks the host this often whether to stop.
constexpr double kSlice = 0.05;

}  // namespace

void ScriptedPort::play(std::vector<Turn> turns) {
    if (turns_.empty()) {
        lastArrival_ = std::max(lastArrival_, host_.elapsed());
    }
    std::move(turns.begin(), turns.end(), std::back_inserter(turns_));
    playReached();
}

void ScriptedPort::arrive(std::span<const std::uint8_t> bytes, double delay) {
    input_.push_back({host_.elapsed() + delay, {bytes.begin(), bytes.end()}});
}

std::string ScriptedPort::problems() const {
    std::string all = failures_;
    if (!pending_.empty()) {
        all += "only the beginning of a turn was written:" + decimalDump(pending_) + '\n';
    }
    for (const Turn& turn : turns_) {
        all += "never written:" + decimalDump(turn.write) + '\n';
    }
    return all;
}

std::int32_t ScriptedPort::open(const std::string& device, const std::string& settings,
                                QueueSizes queues) {
    openings.push_back({device, settings, queues});
    if (observer.open) {
        observer.open(openings.back());
    }
    settingsFailed_ = false;
    if (openError != 0) {
        handle_ = -1;
        return openError;
    }
    handle_ = 3;
    settingsFailed_ = settingsError != 0;
    return settingsError;
}

void ScriptedPort::close() {
    closings += isOpen() ? 1 : 0;
    handle_ = -1;
    settingsFailed_ = false;
    if (observer.close) {
        observer.close();
    }
}

bool ScriptedPort::isGone() const {
    return !usable() || (unplugged_ && !hasArrived());
}

std::size_t ScriptedPort::read(std::span<std::uint8_t> into) {
    const double total = host_.elapsed() + 1.0 + 0.1 * static_cast<double>(into.size());
    std::size_t count = usable() ? takeArrived(into) : 0;
    while (count < into.size() && usable() && !unplugged_) {
        const double gap = host_.elapsed() + 0.1;
        if (!waitForByte(count == 0 ? total : std::min(total, gap))) {
            break;
        }
        count += takeArrived(into.subspan(count));
    }
    return count;
}

std::size_t ScriptedPort::write(std::span<const std::uint8_t> bytes) {
    if (!usable() || unplugged_) {
        return 0;
    }
    if (observer.write) {
        observer.write(bytes);
    }
    written.insert(written.end(), bytes.begin(), bytes.end());
    pending_.insert(pending_.end(), bytes.begin(), bytes.end());
    compareWritten();
    return bytes.size();
}

void ScriptedPort::purge() {
    ++purges;
    while (hasArrived()) {
        input_.pop_front();
    }
}

bool ScriptedPort::hasArrived() const {
    return !input_.empty() && input_.front().arrival <= host_.elapsed() + kSameInstant;
}

// Lets the device speak where it is not asked first.
void ScriptedPort::playReached() {
    while (!turns_.empty() && turns_.front().write.empty()) {
        finishTurn(lastArrival_);
    }
}

void ScriptedPort::compareWritten() {
    while (!pending_.empty()) {
        const Bytes expected = turns_.empty() ? Bytes() : turns_.front().write;
        const std::size_t length = std::min(expected.size(), pending_.size());
        const auto end = pending_.begin() + static_cast<std::ptrdiff_t>(length);
        if (turns_.empty() || !std::equal(pending_.begin(), end, expected.begin())) {
            failures_ += "written:" + decimalDump(pending_) +
                         "\n  expected:" + (turns_.empty() ? " nothing" : decimalDump(expected)) +
                         '\n';
            pending_.clear();
            return;
        }
        if (length < expected.size()) {
            return;
        }
        pending_.erase(pending_.begin(), end);
        finishTurn(host_.elapsed());
        playReached();
    }
}

void ScriptedPort::finishTurn(double from) {
    Turn turn = std::move(turns_.front());
    turns_.pop_front();
    lastArrival_ = from + turn.delay;
    if (!turn.answer.empty()) {
        input_.push_back({lastArrival_, std::move(turn.answer)});
    }
}

// Lets time pass until a byte has arrived; false when it has not by `until` or a stop is requested.
bool ScriptedPort::waitForByte(double until) {
    while (!hasArrived()) {
        if (host_.stopRequested() || host_.elapsed() + kSameInstant >= until) {
            return false;
        }
        double next = std::min(until, host_.elapsed() + kSlice);
        if (!input_.empty()) {
            next = std::min(next, input_.front().arrival);
        }
        host_.advance(next - host_.elapsed());
    }
    return true;
}

std::size_t ScriptedPort::takeArrived(std::span<std::uint8_t> into) {
    std::size_t count = 0;
    while (count < into.size() && hasArrived()) {
        Chunk& chunk = input_.front();
        const std::size_t length = std::min(into.size() - count, chunk.bytes.size() - chunk.taken);
        std::copy_n(chunk.bytes.begin() + static_cast<std::ptrdiff_t>(chunk.taken), length,
                    into.begin() + static_cast<std::ptrdiff_t>(count));
        count += length;
        chunk.taken += length;
        if (chunk.taken == chunk.bytes.size()) {
            input_.pop_front();
        }
    }
    return count;
}

}  // namespace marlune
