// The signals that end a receiver. They are waited for by sigwait(), so they are blocked in every
// thread: call this before there is a second one.
#pragma once

#include <csignal>
#include <initializer_list>

namespace marlune::receivers {

// SIGINT, SIGTERM, SIGHUP (but where nohup wants it ignored) and the given ones. A reader of the
// output that has gone ends nothing: the receiver may still have a host.
inline sigset_t blockSignals(std::initializer_list<int> others) {
    struct sigaction hangUp = {};
    ::sigaction(SIGHUP, nullptr, &hangUp);
    sigset_t signals;
    ::sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        if (signal != SIGHUP || hangUp.sa_handler != SIG_IGN) {
            ::sigaddset(&signals, signal);
        }
    }
    for (const int signal : others) {
        ::sigaddset(&signals, signal);
    }
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    return signals;
}

}  // namespace marlune::receivers
