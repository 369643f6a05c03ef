// A serial port that plays a device from a list of turns, on the clock of a FakeHost.
//
// A turn is what the control must write, byte for byte, and what the device then answers. The
// written bytes are compared as a stream: a turn may be written in several calls, and one call may
// cover several turns. A turn without bytes to write plays as soon as it is reached: the device
// speaks on its own. Silence lasts as long as on a real line (1000 ms + 100 ms per byte asked for
// the first byte, then 100 ms between bytes) and moves the fake clock.
//
// The control owns its port; tests keep a pointer to it:
//
//     FakeHost host;
//     auto owned = std::make_unique<ScriptedPort>(host);
//     ScriptedPort& port = *owned;
//     port.play({{.write = {16, 10}, .answer = {6}}});
//     ...
//     EXPECT_EQ(port.problems(), "");
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "serial/SerialPort.h"
#include "support/FakeHost.h"

namespace marlune {

class ScriptedPort : public SerialPort {
public:
    using Bytes = std::vector<std::uint8_t>;

    struct Turn {
        Bytes write = {};   // what the control must write
        Bytes answer = {};  // what arrives then
        // Seconds from the end of the writing, or from the arrival of the turn before when there is
        // nothing to write, until the answer arrives.
        double delay = 0;
    };
    struct Opening {
        std::string device;
        std::string settings;
        QueueSizes queues;
    };
    // Told of everything as it happens; a write is told as it was called, before it is compared.
    struct Observer {
        std::function<void(const Opening&)> open;
        std::function<void()> close;
        std::function<void(std::span<const std::uint8_t>)> write;
    };

    explicit ScriptedPort(FakeHost& host) : host_(host) {}

    // Appends turns to those not played yet.
    void play(std::vector<Turn> turns);
    // Bytes that arrive now, whatever turn is current.
    void arrive(std::span<const std::uint8_t> bytes, double delay = 0);
    // The device is pulled out: what has arrived is still read, then the port is gone.
    void unplug() { unplugged_ = true; }

    // What the next open() fails with: before the device opens, or at its settings.
    std::int32_t openError = 0;
    std::int32_t settingsError = 0;
    Observer observer;

    std::vector<Opening> openings;
    int closings = 0;  // of an open port
    int purges = 0;
    int settlings = 0;
    Bytes written;  // everything the control wrote

    // The writes that no turn expected and the turns that were never reached, a line each; empty
    // when the script was played from its beginning to its end.
    [[nodiscard]] std::string problems() const;

    std::int32_t open(const std::string& device, const std::string& settings,
                      QueueSizes queues) override;
    void close() override;
    [[nodiscard]] std::int64_t handle() const override { return handle_; }
    [[nodiscard]] bool isGone() const override;
    std::size_t read(std::span<std::uint8_t> into) override;
    std::size_t write(std::span<const std::uint8_t> bytes) override;
    void settle() override { ++settlings; }
    // Discards what has arrived by now, not what is still on its way.
    void purge() override;

private:
    struct Chunk {
        double arrival;  // in FakeHost::elapsed()
        Bytes bytes;
        std::size_t taken = 0;
    };

    [[nodiscard]] bool usable() const { return handle_ >= 1 && !settingsFailed_; }
    [[nodiscard]] bool hasArrived() const;
    void playReached();
    void compareWritten();
    void finishTurn(double from);
    bool waitForByte(double until);
    std::size_t takeArrived(std::span<std::uint8_t> into);

    FakeHost& host_;
    std::deque<Turn> turns_;
    std::deque<Chunk> input_;
    Bytes pending_;  // written, but not yet the whole of the current turn
    std::string failures_;
    double lastArrival_ = 0;
    std::int64_t handle_ = -1;
    bool settingsFailed_ = false;
    bool unplugged_ = false;
};

}  // namespace marlune
