#include "support/PtyStage.h"

#include <gtest/gtest.h>

#include <future>

#include "serial/SerialPort.h"
#include "usb/UsbDevice.h"

namespace marlune {
namespace {

// The platform's port, whose writes are logged as they are called.
class LoggedPort : public SerialPort {
public:
    LoggedPort(std::unique_ptr<SerialPort> port, std::vector<std::string>& log)
        : port_(std::move(port)), log_(log) {}

    std::int32_t open(const std::string& device, const std::string& settings,
                      QueueSizes queues) override {
        return port_->open(device, settings, queues);
    }
    void close() override { port_->close(); }
    [[nodiscard]] std::int64_t handle() const override { return port_->handle(); }
    [[nodiscard]] bool isGone() const override { return port_->isGone(); }
    std::size_t read(std::span<std::uint8_t> into) override { return port_->read(into); }
    [[nodiscard]] std::size_t available() const override { return port_->available(); }
    std::size_t write(std::span<const std::uint8_t> bytes) override {
        log_.push_back(wireText(bytes));
        return port_->write(bytes);
    }
    void settle() override { port_->settle(); }
    void purge() override { port_->purge(); }

private:
    std::unique_ptr<SerialPort> port_;
    std::vector<std::string>& log_;
};

// Ends at the first turn that is not as written. Returns what was wrong with it.
std::string playDevice(const Pty& pty, const std::vector<ScriptedPort::Turn>& turns) {
    for (const ScriptedPort::Turn& turn : turns) {
        const Bytes heard = pty.read(turn.write.size());
        if (heard != turn.write) {
            return "the device heard: " + wireText(heard) + "\n  expected: " + wireText(turn.write);
        }
        if (pty.write(turn.answer) != turn.answer.size()) {
            return "the device could not answer: " + wireText(turn.answer);
        }
    }
    return {};
}

}  // namespace

PtyStage::PtyStage()
    : events([this](const std::string& text) { log_.push_back(text); }),
      host_(log_, documents_),
      control_(host_, events, std::make_unique<LoggedPort>(makeSystemSerialPort(host_), log_),
               nullptr) {
    host_.bindPort(1, pty_.slavePath());
    control_.setNumPort(numPort::Comm1);
}

void PtyStage::play(const Script& script, const std::function<void()>& call) {
    log_.clear();
    // Its result is what went wrong at the device's end.
    auto device = std::async(std::launch::async, [this, turns = serialTurnsOf(script)] {
        return playDevice(pty_, turns);
    });
    call();
    // What the device has not heard yet, the next service might discard.
    EXPECT_EQ(device.get(), "");
    EXPECT_EQ(log_, serialLogOf(script));
}

void PtyStage::connectGarmin(const std::string& tags) {
    play(garminHandshake(tags), [this] { EXPECT_TRUE(control_.gpsConnect()); });
}

}  // namespace marlune
