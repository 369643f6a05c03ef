// A serial port with a virtual receiver at its other end, on the clock of a FakeHost: whole
// sessions, their waits and their pace included, in no time at all. Bytes take the time of their
// speed, and are noise when the two ends differ in it.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "receivers/Pacer.h"
#include "receivers/VirtualReceiver.h"
#include "serial/SerialPort.h"
#include "support/FakeHost.h"

namespace marlune::receivers {

class ReceiverPort : public SerialPort {
public:
    // The receiver stays the caller's.
    ReceiverPort(FakeHost& host, VirtualReceiver& receiver) : host_(host), receiver_(receiver) {}

    std::vector<std::string> openings;  // the settings of each

    std::int32_t open(const std::string& device, const std::string& settings,
                      QueueSizes queues) override;
    void close() override;
    [[nodiscard]] std::int64_t handle() const override { return handle_; }
    [[nodiscard]] bool isGone() const override { return handle_ < 1 || receiver_.hungUp(); }
    std::size_t read(std::span<std::uint8_t> into) override;
    [[nodiscard]] std::size_t available() const override { return arrived_.size(); }
    std::size_t write(std::span<const std::uint8_t> bytes) override;
    void purge() override;

private:
    void catchUp();
    bool waitUntil(double time);
    [[nodiscard]] bool receiverMaySpeak() const;

    FakeHost& host_;
    VirtualReceiver& receiver_;
    Pacer pacer_{true};
    std::deque<std::uint8_t> arrived_;
    std::int64_t handle_ = -1;
    int baud_ = 0;
};

}  // namespace marlune::receivers
