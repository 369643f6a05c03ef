#include "receivers/sentences/ReceiverPort.h"

#include <algorithm>
#include <optional>

#include "serial/LineSettings.h"

namespace marlune::receivers {
namespace {

void garble(std::vector<std::uint8_t>& bytes) {
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(byte ^ 0x95U);
    }
}

}  // namespace

std::int32_t ReceiverPort::open(const std::string& /*device*/, const std::string& settings,
                                QueueSizes /*queues*/) {
    catchUp();
    openings.push_back(settings);
    baud_ = static_cast<int>(parseLineSettings(settings).value().baud.value());
    handle_ = 1;
    return 0;
}

void ReceiverPort::close() {
    catchUp();
    arrived_.clear();
    handle_ = -1;
}

std::size_t ReceiverPort::read(std::span<std::uint8_t> into) {
    catchUp();
    const double end = host_.elapsed() + 1 + 0.1 * static_cast<double>(into.size());
    std::size_t count = 0;
    double limit = end;
    while (count < into.size() && !isGone() && waitUntil(limit)) {
        into[count++] = arrived_.front();
        arrived_.pop_front();
        limit = std::min(end, host_.elapsed() + 0.1);
    }
    return count;
}

// Whether a byte is there by then.
bool ReceiverPort::waitUntil(double time) {
    while (arrived_.empty() && host_.elapsed() < time && !host_.stopRequested()) {
        double next = std::min(time, pacer_.due().value_or(time));
        if (receiverMaySpeak()) {
            next = std::min(next, receiver_.nextDeadline().value_or(time));
        }
        host_.advance(std::max(next - host_.elapsed(), 1e-6));
        catchUp();
    }
    return !arrived_.empty();
}

bool ReceiverPort::receiverMaySpeak() const {
    constexpr std::size_t kAhead = 64;
    return pacer_.backlog() < kAhead;
}

// Lets happen at the other end what is due by now.
void ReceiverPort::catchUp() {
    const double now = host_.elapsed();
    while (receiverMaySpeak() && receiver_.nextDeadline().value_or(now + 1) <= now) {
        receiver_.elapse(now);
        pacer_.add(receiver_.takeSaid(), now);
    }
    for (Said& piece : pacer_.take(now)) {
        if (piece.baud != baud_) {
            garble(piece.bytes);
        }
        if (handle_ >= 1) {
            arrived_.insert(arrived_.end(), piece.bytes.begin(), piece.bytes.end());
        }
    }
}

std::size_t ReceiverPort::write(std::span<const std::uint8_t> bytes) {
    catchUp();
    std::vector<std::uint8_t> heard(bytes.begin(), bytes.end());
    if (receiver_.baud() != baud_) {
        garble(heard);
    }
    receiver_.hear(heard, host_.elapsed());
    pacer_.add(receiver_.takeSaid(), host_.elapsed());
    return bytes.size();
}

void ReceiverPort::purge() {
    catchUp();
    arrived_.clear();
}

}  // namespace marlune::receivers
