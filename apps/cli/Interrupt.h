// The signals that ask the program to end: SIGINT, SIGTERM, SIGHUP. The first one is remembered, so
// that the receiver can be left in order; another one that comes more than a second later ends the
// program as usual. Within that second it is taken for the same: "timeout" signals a program and
// then its whole group, and terminals do the like.
// SIGPIPE is ignored: a reader that goes away must not end a transfer half-way.
//
// At most one object lives at a time; it restores what it found.
#pragma once

#include <array>
#include <atomic>
#include <csignal>
#include <cstdint>

namespace marlune::cli {

class Interrupt {
public:
    Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;
    ~Interrupt();

    [[nodiscard]] bool requested() const { return caught_ != 0; }
    // The signal's number, 0 while none has come.
    [[nodiscard]] int signal() const { return caught_; }
    // Becomes readable with the first signal, and stays so.
    [[nodiscard]] int descriptor() const { return pipe_[0]; }

private:
    static constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

    static void handle(int number);

    // A signal handler sees nothing but these.
    static std::atomic<int> caught_;
    static std::atomic<int> wake_;
    static std::atomic<std::int64_t> caughtAt_;  // milliseconds of the steady clock

    std::array<int, 2> pipe_{-1, -1};
    std::array<struct sigaction, kSignals.size()> before_{};
    struct sigaction beforePipe_ = {};
};

// Keeps those signals from threads that are started in its life, so that they interrupt the waits
// of the thread that the control runs on.
class SignalsHeld {
public:
    SignalsHeld();
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;
    ~SignalsHeld();

private:
    sigset_t before_{};
};

}  // namespace marlune::cli
