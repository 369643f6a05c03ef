#include "Outbox.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <utility>

namespace marlune::qt {
namespace {

// So many deliveries wait for their reader before the writer does.
constexpr std::size_t kMostWaiting = 256;
// What is left when a batch has lasted so long, waits for the timers that are due.
constexpr int kLongestBatch = 10;  // ms

}  // namespace

void Outbox::put(Delivery delivery) {
    std::unique_lock lock(mutex_);
    room_.wait(lock, [this] { return closed_ || !waits_ || deliveries_.size() < kMostWaiting; });
    add(std::move(delivery));
}

void Outbox::post(Delivery delivery) {
    const std::lock_guard lock(mutex_);
    add(std::move(delivery));
}

void Outbox::waitForReader(bool waits) {
    const std::lock_guard lock(mutex_);
    waits_ = waits;
    room_.notify_all();
}

void Outbox::close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    deliveries_.clear();
    room_.notify_all();
}

void Outbox::add(Delivery delivery) {
    if (!closed_) {
        deliveries_.push_back(std::move(delivery));
        schedule();
    }
}

void Outbox::schedule() {
    if (!std::exchange(scheduled_, true)) {
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }
}

bool Outbox::event(QEvent* event) {
    if (event->type() != QEvent::User) {
        return QObject::event(event);
    }
    deliver();
    return true;
}

void Outbox::deliver() {
    const QPointer<Outbox> alive(this);
    const QDeadlineTimer end(kLongestBatch);
    {
        const std::lock_guard lock(mutex_);
        scheduled_ = false;
    }
    while (const auto delivery = next()) {
        (*delivery)();
        if (alive.isNull() || end.hasExpired()) {
            return;
        }
    }
}

// A delivery may enter an event loop of its own, a dialogue's: what is left goes on in there.
std::optional<Outbox::Delivery> Outbox::next() {
    const std::lock_guard lock(mutex_);
    if (deliveries_.empty()) {
        return std::nullopt;
    }
    std::optional<Delivery> delivery = std::move(deliveries_.front());
    deliveries_.pop_front();
    if (!deliveries_.empty()) {
        schedule();
    }
    room_.notify_one();
    return delivery;
}

}  // namespace marlune::qt
