// How late the timers of the user interface are, beside how late this busy machine makes anybody.
#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace marlune::qt {

// The longest that a step of 20 ms lasts too long, in a thread that does nothing else.
class IdleMetronome {
public:
    IdleMetronome() : thread_([this] { run(); }) {}
    IdleMetronome(const IdleMetronome&) = delete;
    IdleMetronome& operator=(const IdleMetronome&) = delete;
    ~IdleMetronome() { (void)stop(); }

    // Ends it; the longest delay in milliseconds.
    qint64 stop() {
        {
            const std::lock_guard lock(mutex_);
            ended_ = true;
        }
        wake_.notify_all();
        if (thread_.joinable()) {
            thread_.join();
        }
        return longest_;
    }

private:
    void run() {
        using std::chrono::milliseconds;
        constexpr milliseconds kStep(20);
        std::unique_lock lock(mutex_);
        while (!ended_) {
            QElapsedTimer step;
            step.start();
            if (!wake_.wait_for(lock, kStep, [this] { return ended_; })) {
                longest_ = std::max(longest_, step.elapsed() - kStep.count());
            }
        }
    }

    std::mutex mutex_;
    std::condition_variable wake_;
    bool ended_ = false;
    qint64 longest_ = 0;
    std::thread thread_;
};

// The same of a timer of 20 ms on the user interface's thread.
class UiMetronome {
public:
    UiMetronome() {
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.setInterval(kStep);
        timer_.callOnTimeout([this] {
            longest_ = std::max(longest_, step_.restart() - kStep);
            ++ticks_;
        });
        step_.start();
        timer_.start();
    }
    // The longest delay by now, the tick that is due included.
    [[nodiscard]] qint64 longest() const { return std::max(longest_, step_.elapsed() - kStep); }
    [[nodiscard]] int ticks() const { return ticks_; }

private:
    static constexpr int kStep = 20;

    QTimer timer_;
    QElapsedTimer step_;
    qint64 longest_ = 0;
    int ticks_ = 0;
};

}  // namespace marlune::qt
