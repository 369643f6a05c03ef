// What another thread has to tell this one, in order and in batches: however much is told, one
// event of Qt's is on its way, and a batch lasts no longer than its reader's timers may slip.
#pragma once

#include <QtCore/QObject>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>

namespace marlune::qt {

// Deliveries are made on the thread that this object lives on. One of them may destroy it, once
// close() was called and nobody is inside put() any more.
class Outbox : public QObject {
public:
    using Delivery = std::function<void()>;

    // Waits while the reader lags behind, unless it is not to be waited for.
    void put(Delivery delivery);
    // As put(), but never waits: for the reader's own thread.
    void post(Delivery delivery);

    // Whether put() waits for a reader that lags; at first it does.
    void waitForReader(bool waits);
    // Nothing is delivered any more, and nobody waits.
    void close();

    bool event(QEvent* event) override;

private:
    void add(Delivery delivery);
    void schedule();
    void deliver();
    std::optional<Delivery> next();

    std::mutex mutex_;
    std::condition_variable room_;
    std::deque<Delivery> deliveries_;
    bool scheduled_ = false;  // an event of Qt's is on its way
    bool waits_ = true;
    bool closed_ = false;
};

}  // namespace marlune::qt
