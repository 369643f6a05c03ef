#include "cli/Interrupt.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <system_error>

namespace marlune::cli {

std::atomic<int> Interrupt::caught_ = 0;
std::atomic<int> Interrupt::wake_ = -1;
std::atomic<std::int64_t> Interrupt::caughtAt_ = 0;

namespace {

std::int64_t steadyMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

}  // namespace

Interrupt::Interrupt() {
    if (pipe2(pipe_.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        throw std::system_error(errno, std::system_category(), "pipe");
    }
    caught_ = 0;
    wake_ = pipe_[1];
    struct sigaction action = {};
    sigemptyset(&action.sa_mask);
    action.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &action, &beforePipe_);
    action.sa_handler = &Interrupt::handle;
    action.sa_flags = 0;  // no SA_RESTART: waits end at once
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], nullptr, &before_[i]);
        // A hang-up that the parent wants ignored (nohup) stays ignored. A shell without job
        // control starts its background jobs with SIGINT ignored, which is not meant for us.
        if (kSignals[i] != SIGHUP || before_[i].sa_handler != SIG_IGN) {
            sigaction(kSignals[i], &action, nullptr);
        }
    }
}

Interrupt::~Interrupt() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &before_[i], nullptr);
    }
    sigaction(SIGPIPE, &beforePipe_, nullptr);
    wake_ = -1;
    close(pipe_[0]);
    close(pipe_[1]);
}

void Interrupt::handle(int number) {
    constexpr std::int64_t kSameRequest = 1000;
    const int error = errno;
    const std::int64_t now = steadyMilliseconds();
    if (caught_ != 0) {
        if (now - caughtAt_ > kSameRequest) {
            std::signal(number, SIG_DFL);
            std::raise(number);  // takes effect when this handler returns
        }
        errno = error;
        return;
    }
    caughtAt_ = now;
    caught_ = number;
    const char byte = 0;
    // The pipe cannot be full; with the byte lost, the flag still tells.
    [[maybe_unused]] const ssize_t written = write(wake_, &byte, 1);
    errno = error;
}

SignalsHeld::SignalsHeld() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
}

SignalsHeld::~SignalsHeld() {
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace marlune::cli
