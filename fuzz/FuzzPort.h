// A serial port whose device says what the fuzzer wants: each write of the control, and each silent
// read, lets the device say the next piece of the input; when the input is used up it is silent.
//
// Silence takes as long as on a real line, on the clock of a FakeHost. After so many silent reads
// without a word in between the user asks to stop, so that every service comes to an end.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/Services.h"
#include "serial/ComPort.h"
#include "support/Dialogue.h"

namespace marlune {

// The input, taken from its front.
class FuzzInput {
public:
    explicit FuzzInput(std::span<const std::uint8_t> bytes) : left_(bytes) {}

    [[nodiscard]] bool empty() const { return left_.empty(); }
    // 0 at the end.
    std::uint8_t byte();
    // At most so many.
    std::vector<std::uint8_t> bytes(std::size_t count);

private:
    std::span<const std::uint8_t> left_;
};

class FuzzPort : public SerialPort {
public:
    // The user waits for so many reads in a row that bring nothing: silent ones, which take their
    // time, count more than those from a line that is gone.
    static constexpr int kPatience = 40 * 32;
    static constexpr int kSilence = 32;

    // Both must outlive the port.
    FuzzPort(FakeHost& host, FuzzInput& input) : host_(host), input_(input) {}

    static constexpr std::size_t kAll = SIZE_MAX;
    // How much of what it has read ahead the port tells.
    std::size_t tellsAhead = kAll;

    // What the device has said and nobody has read.
    [[nodiscard]] std::size_t left() const { return said_.size() - taken_; }
    // The user has patience again.
    void beginService();
    // All that is left of the input arrives now.
    void sayAll();

    std::int32_t open(const std::string& device, const std::string& settings,
                      QueueSizes queues) override;
    void close() override { handle_ = -1; }
    [[nodiscard]] std::int64_t handle() const override { return handle_; }
    [[nodiscard]] bool isGone() const override {
        return handle_ < 1 || (unplugged_ && left() == 0);
    }
    std::size_t read(std::span<std::uint8_t> into) override;
    [[nodiscard]] std::size_t available() const override { return std::min(tellsAhead, left()); }
    std::size_t write(std::span<const std::uint8_t> bytes) override;
    void purge() override;

private:
    void sayNext();
    bool sayPiece(std::uint8_t kind);
    void sayFrame();
    void saySentence();
    void beSilent(std::size_t asked, std::size_t came);
    void losePatience(int much);

    FakeHost& host_;
    FuzzInput& input_;
    std::vector<std::uint8_t> said_;
    std::size_t taken_ = 0;
    std::int64_t handle_ = -1;
    bool unplugged_ = false;
    int patience_ = kPatience;
};

// An open line that brings these bytes, then silence, and what a procedure on it is handed.
struct FuzzLine {
    FuzzLine(std::span<const std::uint8_t> bytes, std::size_t tellsAhead) : input(bytes) {
        device->tellsAhead = tellsAhead;
        device->sayAll();
        port.open();
    }

    FuzzInput input;
    FakeHost host;
    RecordedEvents events{[this](const std::string& text) { heard.push_back(text); }};
    std::vector<std::string> heard;
    DebugTrace trace{""};
    Records records;
    Reports reports;
    Services services{host, events, trace, records, reports};
    FuzzPort* device = new FuzzPort(host, input);
    ComPort port{host, std::unique_ptr<SerialPort>(device)};
};

}  // namespace marlune
