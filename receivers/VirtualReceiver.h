// The device side of a line, as an event-driven state machine over memory: it is told what it hears
// and how late it is, and what it says is collected from it. No thread, no I/O and no clock of its
// own, so that the same receiver runs in a test on a fake clock, behind a pty (PtyRunner) and under
// a fuzzer.
//
// Time is in seconds on a clock of the caller's that never goes back; its origin does not matter.
// The owner calls hear() with what came over the line, elapse() when nextDeadline() has come, and
// takes the output after either.
//
// Receivers stand on their own: they share no record codec and no frame with the control, so that a
// mistake on one side is not hidden by the same mistake on the other.
//
// Thread: one at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "receivers/Faults.h"

namespace marlune::receivers {

// Bytes on the line and the speed, in bits per second, at which they are said.
struct Said {
    std::vector<std::uint8_t> bytes;
    int baud = 0;
};

class VirtualReceiver {
public:
    VirtualReceiver(const VirtualReceiver&) = delete;
    VirtualReceiver& operator=(const VirtualReceiver&) = delete;
    virtual ~VirtualReceiver() = default;

    // Tells the receiver what came over the line. Any bytes are welcome.
    void hear(std::span<const std::uint8_t> bytes, double now);

    // Tells the receiver that time has passed. Harmless when nothing is due.
    void elapse(double now);

    // Tells the receiver that its line has come to an end: what is under way is broken off.
    void end() { ended(); }

    // When elapse() must be called next (streams, time-outs); nothing when the receiver only waits
    // for the other end.
    [[nodiscard]] std::optional<double> nextDeadline() const;

    // What was said since the last call, in order, all speeds together.
    std::vector<std::uint8_t> takeOutput();
    // The same, in pieces of one speed each.
    std::vector<Said> takeSaid();

    // The speed at which the receiver listens, and at which it says what comes next.
    [[nodiscard]] int baud() const { return baud_; }

    // True once a fault has hung up: the receiver hears and says nothing any more.
    [[nodiscard]] bool hungUp() const { return hungUp_; }

    // What the receiver holds, uploads included, as the control's text lines (UTF-8).
    [[nodiscard]] virtual std::vector<std::string> lines() const = 0;

    // What the other end did that a receiver of this family has reason to wonder about, oldest
    // first, one English text each.
    [[nodiscard]] const std::vector<std::string>& complaints() const { return complaints_; }

protected:
    VirtualReceiver(int baud, Faults faults);

    // The family's work. Called with what the faults have left of the bytes.
    virtual void heard(std::span<const std::uint8_t> bytes, double now) = 0;
    virtual void elapsed(double /*now*/) {}
    virtual void ended() {}
    [[nodiscard]] virtual std::optional<double> deadline() const { return std::nullopt; }
    // A well-formed packet or sentence of a kind that no host knows, for the fault of that name.
    [[nodiscard]] virtual std::vector<std::uint8_t> unknownPacket() const = 0;

    // Says one packet, sentence or block. The label is what a fault's "of" names: the packet id in
    // decimal ("35"), the sentence's name ("PMGNWPL").
    void say(std::string_view label, std::vector<std::uint8_t> bytes);

    // Whether a fault wants the packet refused that was just heard. Ask once for each packet that
    // wants an answer.
    bool refuses(std::string_view label) { return faults_.refuses(label); }

    // Changes the speed; what was said before keeps the speed at which it was said.
    void setBaud(int baud) { baud_ = baud; }

    // Keeps a complaint, up to a number that nobody reads to its end.
    void complain(const std::string& text);

    // For lines that carry messages, not a stream: what is said then stays in one piece each.
    void keepApart() { apart_ = true; }

private:
    void emit(std::vector<std::uint8_t> bytes);

    Faults faults_;
    int baud_;
    bool hungUp_ = false;
    bool apart_ = false;
    std::vector<Said> said_;
    std::vector<std::string> complaints_;
    std::vector<std::uint8_t>
        worn_;  // what the faults left of the bytes heard; kept for its memory
};

}  // namespace marlune::receivers
