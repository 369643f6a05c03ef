// What the user interface wants of the control, for the thread that has it: calls of members and
// settings in their order, and how to end what runs.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include "control/Surface.h"

namespace marlune::qt {

class Worker;

// A call of a member, or something to set between two of them.
struct Command {
    const surface::Member* member = nullptr;  // null for a setting
    std::vector<surface::Argument> arguments;
    std::function<void(Worker&)> setting;
    bool forgotten = false;  // a stop came before its turn

    [[nodiscard]] bool endsOthers() const {
        return member != nullptr && (member->role == surface::Role::stops || disconnects());
    }
    [[nodiscard]] bool disconnects() const {
        return member != nullptr && member->role == surface::Role::disconnects;
    }
};

// Why a wait for somebody's answer is over.
enum class Woken { answered, byEnder, byStop };

class Commands {
public:
    // For the user interface.

    void add(Command command);
    // What runs is to end, and the members that wait for their turn are not to run. Properties are
    // put all the same, since their readers see the new value already; so are those made that end
    // others.
    void stop();
    // As stop(); and next() gives nothing any more.
    void end();

    // For the control's thread.

    // The next in order, once there is one; nothing at the end. What was running has ended then.
    std::optional<Command> next();
    // The next one that ends what runs, out of its order, if there is one.
    std::optional<Command> nextEnder();
    // Whether what runs was stopped.
    [[nodiscard]] bool isStopped();
    // Whether what runs is to end now: it was stopped, or is to be disconnected.
    [[nodiscard]] bool isToEnd();
    // Waits until the condition, which answered() announces, holds, or what runs is to do something
    // else.
    Woken waitFor(const std::function<bool()>& condition);
    void answered();

private:
    [[nodiscard]] bool holdsEnder() const;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Command> commands_;
    bool running_ = false;  // a member
    bool stopped_ = false;
    bool ended_ = false;
};

}  // namespace marlune::qt
