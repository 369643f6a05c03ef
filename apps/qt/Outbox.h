// What one thread has to tell an object of another, in order and in batches: however much is told,
// one event of Qt's is on its way, and a batch lasts no longer than its reader's timers may slip.
#pragma once

#include <QtCore/QObject>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>

namespace marlune::qt {

class Outbox {
public:
    using Delivery = std::function<void()>;

    // Deliveries are made on the receiver's thread, which may destroy the receiver and this object
    // in one of them. Nobody may be inside put() when that happens, unless close() was called.
    explicit Outbox(QObject& receiver) : receiver_(receiver) {}

    // Waits while the reader lags behind, unless it is not to be waited for.
    void put(Delivery delivery);
    // As put(), but never waits: for the receiver's own thread.
    void post(Delivery delivery);

    // Whether put() waits for a reader that lags; at first it does.
    void waitForReader(bool waits);
    // Nothing is delivered any more, and nobody waits.
    void close();

private:
    void add(Delivery delivery);
    void schedule();
    void deliver();
    std::optional<Delivery> next();

    QObject& receiver_;
    std::mutex mutex_;
    std::condition_variable room_;
    std::deque<Delivery> deliveries_;
    bool scheduled_ = false;  // an event of Qt's is on its way
    bool waits_ = true;
    bool closed_ = false;
};

}  // namespace marlune::qt
