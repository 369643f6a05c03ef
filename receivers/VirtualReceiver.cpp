#include "receivers/VirtualReceiver.h"

#include <algorithm>
#include <utility>

namespace marlune::receivers {

VirtualReceiver::VirtualReceiver(int baud, Faults faults)
    : faults_(std::move(faults)), baud_(baud) {}

void VirtualReceiver::hear(std::span<const std::uint8_t> bytes, double now) {
    if (hungUp_) {
        return;
    }
    if (!faults_.wears(Faults::Way::heard)) {
        heard(bytes, now);
        return;
    }
    worn_.assign(bytes.begin(), bytes.end());
    faults_.wear(worn_, Faults::Way::heard);
    heard(worn_, now);
}

void VirtualReceiver::elapse(double now) {
    if (!hungUp_) {
        elapsed(now);
    }
}

std::optional<double> VirtualReceiver::nextDeadline() const {
    return hungUp_ ? std::nullopt : deadline();
}

std::vector<std::uint8_t> VirtualReceiver::takeOutput() {
    std::vector<std::uint8_t> all;
    for (const Said& piece : takeSaid()) {
        all.insert(all.end(), piece.bytes.begin(), piece.bytes.end());
    }
    return all;
}

std::vector<Said> VirtualReceiver::takeSaid() {
    return std::exchange(said_, {});
}

void VirtualReceiver::say(std::string_view label, std::vector<std::uint8_t> bytes) {
    if (hungUp_) {
        return;
    }
    const Faults::Fate fate = faults_.nextSaid(label);
    hungUp_ = fate.hangUp;
    if (fate.hangUp || fate.silent) {
        return;
    }
    if (fate.unknownFirst) {
        emit(unknownPacket());
    }
    if (fate.cutShort) {
        bytes.resize(std::min(bytes.size(), fate.keep.value_or(bytes.size() / 2)));
    }
    emit(std::move(bytes));
}

void VirtualReceiver::complain(const std::string& text) {
    constexpr std::size_t kEnough = 1000;
    if (complaints_.size() < kEnough) {
        complaints_.push_back(text);
    }
}

void VirtualReceiver::emit(std::vector<std::uint8_t> bytes) {
    faults_.wear(bytes, Faults::Way::said);
    if (!apart_ && !said_.empty() && said_.back().baud == baud_) {
        said_.back().bytes.insert(said_.back().bytes.end(), bytes.begin(), bytes.end());
    } else if (!bytes.empty()) {
        said_.push_back({std::move(bytes), baud_});
    }
}

}  // namespace marlune::receivers
