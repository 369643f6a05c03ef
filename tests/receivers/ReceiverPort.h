// The line between a control and a virtual receiver, in memory and on the clock of a FakeHost: time
// passes while the control waits, and the receiver says what is due meanwhile. Speeds and pacing
// are left out. What the receiver says while the port is closed is lost.
#pragma once

#include <algorithm>
#include <deque>
#include <memory>
#include <optional>
#include <utility>

#include "receivers/VirtualReceiver.h"
#include "serial/SerialPort.h"
#include "support/FakeHost.h"

namespace marlune::receivers {

class ReceiverPort : public SerialPort {
public:
    // The host must outlive the port.
    ReceiverPort(FakeHost& host, std::unique_ptr<VirtualReceiver> receiver)
        : host_(host), receiver_(std::move(receiver)) {}

    [[nodiscard]] const VirtualReceiver& receiver() const { return *receiver_; }

    std::int32_t open(const std::string& /*device*/, const std::string& /*settings*/,
                      QueueSizes /*queues*/) override {
        catchUp();
        handle_ = 3;
        return 0;
    }
    void close() override {
        purge();
        handle_ = -1;
    }
    [[nodiscard]] std::int64_t handle() const override { return handle_; }
    [[nodiscard]] bool isGone() const override {
        return handle_ < 1 || (receiver_->hungUp() && arrived_.empty());
    }
    [[nodiscard]] std::size_t available() const override { return arrived_.size(); }

    std::size_t read(std::span<std::uint8_t> into) override {
        catchUp();
        const double first = 1.0 + 0.1 * static_cast<double>(into.size());
        const double last = host_.elapsed() + first;
        std::size_t count = takeArrived(into);
        while (!isGone() && !host_.stopRequested() && count < into.size() &&
               waitForByte(std::min(last, host_.elapsed() + (count == 0 ? first : 0.1)))) {
            count += takeArrived(into.subspan(count));
        }
        return count;
    }
    std::size_t write(std::span<const std::uint8_t> bytes) override {
        if (isGone()) {
            return 0;
        }
        catchUp();
        receiver_->hear(bytes, host_.elapsed());
        catchUp();
        return bytes.size();
    }
    void purge() override {
        catchUp();
        arrived_.clear();
    }

private:
    [[nodiscard]] std::optional<double> dueBy(double time) const {
        const std::optional<double> due = receiver_->nextDeadline();
        return due && *due <= time ? due : std::nullopt;
    }
    void collect() {
        const std::vector<std::uint8_t> said = receiver_->takeOutput();
        if (handle_ >= 1) {
            arrived_.insert(arrived_.end(), said.begin(), said.end());
        }
    }
    // The receiver says what was due by now.
    void catchUp() {
        collect();
        while (dueBy(host_.elapsed())) {
            receiver_->elapse(host_.elapsed());
            collect();
        }
    }
    bool waitForByte(double until) {
        while (arrived_.empty()) {
            const std::optional<double> due = dueBy(until);
            host_.advance(due.value_or(until) - host_.elapsed());
            if (!due) {
                return false;
            }
            catchUp();
        }
        return true;
    }
    std::size_t takeArrived(std::span<std::uint8_t> into) {
        const std::size_t count = std::min(into.size(), arrived_.size());
        const auto end = arrived_.begin() + static_cast<std::ptrdiff_t>(count);
        std::copy(arrived_.begin(), end, into.begin());
        arrived_.erase(arrived_.begin(), end);
        return count;
    }

    FakeHost& host_;
    std::unique_ptr<VirtualReceiver> receiver_;
    std::deque<std::uint8_t> arrived_;
    std::int64_t handle_ = -1;
};

}  // namespace marlune::receivers
