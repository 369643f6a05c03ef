// A pseudo terminal: the control opens slavePath() as its serial port, the test plays the device at
// the other end. The line is raw from the beginning, so nothing is echoed or translated.
//
// Reads and writes wait in poll() for what the other end does, and never longer than kPatience:
// that bound is only met by a test that fails.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace marlune {

class Pty {
public:
    static constexpr int kPatienceMilliseconds = 10000;

    // Throws std::system_error when the system has no pseudo terminal left.
    Pty();
    Pty(const Pty&) = delete;
    Pty& operator=(const Pty&) = delete;
    ~Pty();

    [[nodiscard]] const std::string& slavePath() const { return slavePath_; }
    [[nodiscard]] int masterDescriptor() const { return master_; }

    // Writes everything; returns what was taken within the patience.
    [[nodiscard]] std::size_t write(std::span<const std::uint8_t> bytes) const;
    // Reads until count bytes have come, or the patience is over; returns those that came.
    [[nodiscard]] std::vector<std::uint8_t> read(std::size_t count) const;
    // What has come by now, without waiting.
    [[nodiscard]] std::vector<std::uint8_t> readArrived() const;
    // Takes the device away: the slave reads as hung up from now on.
    void hangUp();

private:
    [[nodiscard]] bool waitFor(short events) const;

    int master_ = -1;
    std::string slavePath_;
};

}  // namespace marlune
