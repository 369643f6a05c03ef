// Runs a virtual receiver behind a pty until it is stopped or the receiver hangs up.
//
// A paced receiver has the speed that it was given, and one that changes its speed means it: bytes
// that cross the line while the host's speed differs arrive as noise, as they would on a real line.
// Any other goes by whatever speed the host opens with.
//
// Thread: run() works on the thread that calls it, start() on one of its own; stop() and lines()
// may be called from any thread meanwhile. stop() is safe in a signal handler too.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "receivers/Pacer.h"
#include "receivers/PtyLine.h"
#include "receivers/VirtualReceiver.h"

namespace marlune::receivers {

class PtyRunner {
public:
    struct Options {
        bool paced = false;  // bytes take the time of the receiver's speed; else they come at once
        std::string link;    // a symbolic link to make to the pty; empty for none
    };

    // Opens the pty. Throws std::system_error.
    PtyRunner(std::unique_ptr<VirtualReceiver> receiver, const Options& options);
    PtyRunner(const PtyRunner&) = delete;
    PtyRunner& operator=(const PtyRunner&) = delete;
    // Stops, waits for the thread, removes the link.
    ~PtyRunner();

    [[nodiscard]] const std::string& path() const { return line_.path(); }

    // Works until stop() or a hang-up.
    void run();
    void start();
    void stop();

    // What the receiver holds, and what it wonders about; see VirtualReceiver.
    [[nodiscard]] std::vector<std::string> lines() const;
    [[nodiscard]] std::vector<std::string> complaints() const;

private:
    void serve();
    [[nodiscard]] bool mayHangUp();
    void wait();
    [[nodiscard]] bool isClogged() const {
        return pacer_.backlog() + unwritten_.size() >= mostAhead_;
    }
    [[nodiscard]] std::optional<double> nextWake() const;
    void listen();
    void speak();
    void queueSaid(double now);
    void makeNoiseUnless(bool speedsAgree, std::vector<std::uint8_t>& bytes);
    void noteSpeed(int baud) { mindsSpeed_ = mindsSpeed_ || baud != firstBaud_; }
    static double clock();

    mutable std::mutex mutex_;  // guards receiver_
    std::unique_ptr<VirtualReceiver> receiver_;
    PtyLine line_;
    Pacer pacer_;
    int firstBaud_;
    bool mindsSpeed_;        // the host's speed has to be the receiver's
    std::size_t mostAhead_;  // bytes said that the host has not got yet, before streams wait
    int wake_ = -1;
    std::atomic<bool> stopping_ = false;
    std::optional<double> hangUpDue_;
    std::vector<std::uint8_t> heard_;
    std::vector<std::uint8_t> unwritten_;  // came out of the pacer, found no room in the pty
    std::minstd_rand noise_{1};
    std::thread thread_;
};

}  // namespace marlune::receivers
