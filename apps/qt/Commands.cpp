#include "Commands.h"

#include <algorithm>
#include <utility>

namespace marlune::qt {

void Commands::add(Command command) {
    const std::lock_guard lock(mutex_);
    commands_.push_back(std::move(command));
    changed_.notify_all();
}

void Commands::stop() {
    const std::lock_guard lock(mutex_);
    stopped_ = running_;
    for (Command& command : commands_) {
        command.forgotten = command.member != nullptr && !command.endsOthers() &&
                            command.member->kind != surface::Kind::propertyPut;
    }
    changed_.notify_all();
}

void Commands::end() {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    stopped_ = true;
    changed_.notify_all();
}

std::optional<Command> Commands::next() {
    std::unique_lock lock(mutex_);
    running_ = false;
    stopped_ = ended_;
    changed_.wait(lock, [this] { return ended_ || !commands_.empty(); });
    if (ended_) {
        return std::nullopt;
    }
    Command command = std::move(commands_.front());
    commands_.pop_front();
    running_ = command.member != nullptr;
    return command;
}

std::optional<Command> Commands::nextEnder() {
    const std::lock_guard lock(mutex_);
    const auto ender = std::ranges::find_if(commands_, &Command::endsOthers);
    if (ender == commands_.end()) {
        return std::nullopt;
    }
    Command command = std::move(*ender);
    commands_.erase(ender);
    return command;
}

bool Commands::isStopped() {
    const std::lock_guard lock(mutex_);
    return stopped_;
}

bool Commands::isToEnd() {
    const std::lock_guard lock(mutex_);
    return stopped_ || std::ranges::any_of(commands_, &Command::disconnects);
}

Woken Commands::waitFor(const std::function<bool()>& condition) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return stopped_ || condition() || holdsEnder(); });
    if (stopped_) {
        return Woken::byStop;
    }
    return condition() ? Woken::answered : Woken::byEnder;
}

void Commands::answered() {
    const std::lock_guard lock(mutex_);
    changed_.notify_all();
}

bool Commands::holdsEnder() const {
    return std::ranges::any_of(commands_, &Command::endsOthers);
}

}  // namespace marlune::qt
