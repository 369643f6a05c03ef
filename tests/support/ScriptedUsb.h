// A USB device that plays a receiver from a list of turns, on the clock of a FakeHost.
//
// A turn is one block that the control must write, byte for byte, and what the receiver then puts
// on its two input pipes. A turn without bytes to write plays as soon as it is reached. A read
// takes at most one block, in pieces when it asks for less; an empty block is a zero-length packet.
// A silent read lasts its whole time-out and moves the fake clock.
//
// Session starts are answered by the device itself unless a test wants to script them.
//
//     FakeHost host;
//     auto owned = std::make_unique<ScriptedUsb>(host);
//     ScriptedUsb& usb = *owned;
//     usb.play({{.write = packet(20, 10, {5, 0}), .interrupt = {packet(20, 14, ...)}}});
//     ...
//     EXPECT_EQ(usb.problems(), "");
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "support/FakeHost.h"
#include "usb/UsbDevice.h"

namespace marlune {

class ScriptedUsb : public UsbDevice {
public:
    using Bytes = std::vector<std::uint8_t>;

    struct Turn {
        Bytes write = {};                        // the block that the control must write
        std::vector<Bytes> interrupt = {};       // blocks on the interrupt pipe
        std::vector<Bytes> bulk = {};            // blocks on the bulk pipe
        double delay = 0;                        // seconds until they arrive
        std::function<void()> action = nullptr;  // called once the block was written
    };

    // A packet written out by hand: type, id, the announced size and the data.
    static Bytes packet(std::uint8_t type, std::uint16_t id, const Bytes& data = {});

    explicit ScriptedUsb(FakeHost& host) : host_(host) {}

    // Appends turns to those not played yet.
    void play(std::vector<Turn> turns);
    // The device is pulled out: every operation fails from now on.
    void unplug() { unplugged_ = true; }

    // Told of every block as it is written, before it is compared.
    std::function<void(const Bytes&)> onWrite;
    std::string path = "usb:001:004";  // empty: no receiver is on the bus
    bool opens = true;
    bool answersSessions = true;
    int refusals = 0;  // so many of the next writes are not taken and time out

    // What happened. Session starts that the device answered itself are in neither.
    std::vector<Bytes> written;
    int sessions = 0;
    int openings = 0;

    // The writes that no turn expected and the turns that were never reached, a line each; empty
    // when the script was played from its beginning to its end.
    [[nodiscard]] std::string problems() const;

    std::string findDevicePath() override { return unplugged_ ? std::string() : path; }
    bool open() override;
    void close() override { open_ = false; }
    [[nodiscard]] bool isOpen() const override { return open_; }
    [[nodiscard]] bool isGone() const override { return !open_ || unplugged_; }
    // Drops what has arrived by now.
    void discard() override;
    int writeBlock(std::span<const std::uint8_t> block) override;
    int readInterruptBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) override;
    int readBulkBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) override;
    std::uint32_t queryApiVersion() override { return 1; }
    std::uint32_t queryPacketSize() override { return 64; }

private:
    struct Block {
        double arrival;  // in FakeHost::elapsed()
        Bytes bytes;
    };
    using Pipe = std::deque<Block>;

    static constexpr int kSilence = -1;

    void playReached();
    void finishTurn();
    void answer(const Turn& turn);
    // One block within the time-out; kSilence when none came.
    int read(Pipe& pipe, std::span<std::uint8_t> block, int timeoutMilliseconds);

    FakeHost& host_;
    std::deque<Turn> turns_;
    Pipe interrupt_;
    Pipe bulk_;
    std::string failures_;
    bool open_ = false;
    bool unplugged_ = false;
};

}  // namespace marlune
