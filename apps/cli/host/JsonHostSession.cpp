#include "cli/host/JsonHostSession.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <utility>

#include "words/UploadFile.h"

namespace marlune::cli {
namespace {

// With so many commands in hand the rest stays in the pipe, and holds up whoever writes it.
constexpr std::size_t kMostWaiting = 1000;

bool calls(const Command& command, surface::Role role) {
    const Call* call = std::get_if<Call>(&command);
    return call != nullptr && call->member->role == role;
}

// Whether it calls a member that ends nothing, and waits until nothing runs.
bool waitsItsTurn(const Command& command) {
    return std::holds_alternative<Call>(command) && !calls(command, surface::Role::stops) &&
           !calls(command, surface::Role::disconnects);
}

// What the members of an upload send.
std::optional<GpxKind> sentKind(const surface::Member& member) {
    if (member.parameters.size() == 0 ||
        member.parameters[0].type != surface::Type::textReference) {
        return std::nullopt;
    }
    switch (member.transfer) {
        case TransferKind::waypoints:
            return GpxKind::waypoints;
        case TransferKind::routes:
            return GpxKind::routes;
        case TransferKind::tracks:
            return GpxKind::tracks;
        default:
            return std::nullopt;
    }
}

}  // namespace

JsonHostSession::JsonHostSession(const Options& options, int input, Output& output,
                                 HostServices& host, const Interrupt& interrupt,
                                 const MakeControl& make)
    : options_(options),
      speech_(options.language),
      host_(host),
      input_(input),
      output_(output),
      interrupt_(interrupt),
      writer_(output),
      events_(writer_, *this),
      control_(make(host, events_)),
      stop_(*control_, host, output) {
    host.onBox = [this](const std::string& text, BoxIcon icon) {
        writer_.box(text, icon);
        stop_.act();
    };
    host.onProcessEvents = [this] { processEvents(); };
    host.onWait = [this] { return disconnectionWaits(); };
    if (options.details) {
        writer_.tellDetailsOf(*control_);
    }
}

void JsonHostSession::run() {
    while (!stop_.requested()) {
        queueArrived();
        if (!waiting_.empty()) {
            Command next = std::move(waiting_.front());
            waiting_.pop_front();
            take(std::move(next));
        } else if (input_.ended()) {
            break;
        } else {
            input_.wait(interrupt_, output_);
            output_.checkReader();
        }
    }
    stop_.disconnect();
}

void JsonHostSession::eventBegins() {
    if (!stop_.requested()) {
        takeWhileRunning();
    }
}

void JsonHostSession::eventWritten(const surface::Event& event) {
    if (!stop_.act()) {
        callRegistered(event);
        callUrgent();
    }
}

void JsonHostSession::processEvents() {
    if (!stop_.act()) {
        takeWhileRunning();
        callUrgent();
    }
}

std::optional<Command> JsonHostSession::nextArrived() {
    if (waiting_.size() >= kMostWaiting) {
        return std::nullopt;
    }
    const auto line = input_.next();
    return line ? std::optional(parseCommand(*line)) : std::nullopt;
}

void JsonHostSession::queueArrived() {
    while (auto command = nextArrived()) {
        waiting_.push_back(std::move(*command));
    }
}

void JsonHostSession::takeWhileRunning() {
    // What was there before the member was called, up to the first call that waits its turn.
    while (!waiting_.empty() && !waitsItsTurn(waiting_.front()) &&
           !calls(waiting_.front(), surface::Role::disconnects)) {
        Command next = std::move(waiting_.front());
        waiting_.pop_front();
        takeAside(std::move(next));
    }
    while (auto command = nextArrived()) {
        if (waitsItsTurn(*command)) {
            waiting_.push_back(std::move(*command));
        } else {
            takeAside(std::move(*command));
        }
    }
}

void JsonHostSession::takeAside(Command command) {
    if (Call* call = std::get_if<Call>(&command)) {
        urgent_.push_back(std::move(*call));
    } else {
        take(std::move(command));
    }
}

void JsonHostSession::callUrgent() {
    while (!urgent_.empty() && !stop_.requested()) {
        const Call next = std::move(urgent_.front());
        urgent_.pop_front();
        call(next);
    }
}

void JsonHostSession::callRegistered(const surface::Event& event) {
    std::vector<Call> due;
    std::erase_if(handlers_, [&](When& when) {
        if (when.event != &event || --when.events > 0) {
            return false;
        }
        due.push_back(std::move(when.call));
        return true;
    });
    for (const Call& next : due) {
        if (!stop_.requested()) {
            call(next);
        }
    }
}

void JsonHostSession::take(Command command) {
    if (const Call* next = std::get_if<Call>(&command)) {
        call(*next);
    } else if (When* when = std::get_if<When>(&command)) {
        handlers_.push_back(std::move(*when));
    } else {
        writer_.error(std::get<Fault>(command));
    }
}

void JsonHostSession::call(const Call& call) {
    if (running_ == 0) {
        queueArrived();  // they came before the call: they keep their order
    }
    ++running_;
    const surface::Result result = perform(call);
    --running_;
    writer_.result(call, result);
}

surface::Result JsonHostSession::perform(const Call& call) {
    const surface::Member& member = *call.member;
    if (running_ == 1) {  // what runs inside another waits as that one does
        host_.setPatience(options_.patience(member.transfer == TransferKind::sentences));
    }
    const bool connectingBefore =
        std::exchange(connecting_, member.role == surface::Role::connects);
    surface::Result result =
        sentKind(member) ? upload(call) : member.call(*control_, call.arguments);
    if (connecting_) {
        callUrgent();  // the disconnection that ended it
    }
    connecting_ = connectingBefore;
    return result;
}

// The file as the one-shot commands read it: GPX, or UTF-8 without a mark, as well. A file that
// cannot be read is the control's to complain about.
surface::Result JsonHostSession::upload(const Call& call) {
    const auto& path = std::get<std::string>(call.arguments.front());
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored) || access(path.c_str(), R_OK) != 0) {
        return call.member->call(*control_, call.arguments);
    }
    try {
        const words::UploadFile file(path, *sentKind(*call.member), speech_);
        const surface::Argument argument = file.path();
        return call.member->call(*control_, {&argument, 1});
    } catch (const std::runtime_error& error) {
        writer_.box(error.what(), BoxIcon::critical);
        return false;
    }
}

// In the middle of a wait nothing can be called: the disconnection is when the wait has ended.
bool JsonHostSession::disconnectionWaits() {
    if (!connecting_ || stop_.requested()) {
        return false;
    }
    takeWhileRunning();
    return std::any_of(urgent_.begin(), urgent_.end(), [](const Call& call) {
        return call.member->role == surface::Role::disconnects;
    });
}

}  // namespace marlune::cli
