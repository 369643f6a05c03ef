#include "Worker.h"

#include <chrono>
#include <utility>

#include "control/ToldRecord.h"

namespace marlune::qt {
namespace {

QVariant variantOf(const surface::EventValue& value) {
    if (const auto* const text = std::get_if<std::string_view>(&value)) {
        return QString::fromUtf8(text->data(), static_cast<qsizetype>(text->size()));
    }
    return int{std::get<std::int16_t>(value)};
}

QVariant variantOf(const surface::Result& result) {
    if (const auto* const text = std::get_if<std::string>(&result)) {
        return QString::fromStdString(*text);
    }
    if (const auto* const number = std::get_if<double>(&result)) {
        return *number;
    }
    const auto* const success = std::get_if<bool>(&result);
    return success == nullptr ? QVariant() : QVariant(*success);
}

}  // namespace

Worker::~Worker() {
    commands_.end();
    outbox_.close();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void Worker::command(Command command) {
    commands_.add(std::move(command));
    if (!thread_.joinable()) {
        thread_ = std::thread([this] { run(); });
    }
}

void Worker::stop() {
    commands_.stop();
    outbox_.waitForReader(false);
}

void Worker::answer(Box& box) {
    box.answered = true;
    commands_.answered();
}

void Worker::run() {
    while (const auto command = commands_.next()) {
        perform(*command);
    }
    // The receiver's last words must not meet whoever opens its line next: they are heard as the
    // control goes, if they are short.
    constexpr std::chrono::milliseconds kFarewell(100);
    farewell_ = std::chrono::steady_clock::now() + kFarewell;
    control_.reset();
}

GpsControl& Worker::control() {
    if (!control_) {
        Host& host = *this;
        GpsControlEvents& events = *this;
        control_ = std::make_unique<GpsControl>(host, events);
        control_->setNumPort(numPort::Comm1);
    }
    return *control_;
}

void Worker::perform(const Command& command) {
    if (command.setting) {
        command.setting(*this);
    } else if (command.forgotten) {
        tell(endOf(*command.member, {}));
    } else {
        performMember(command);
    }
}

void Worker::performMember(const Command& command) {
    outbox_.waitForReader(!commands_.isStopped());
    hearOut(*command.member);
    running_ = command.member->transfer;
    receiverStopped_ = false;
    // A stream of sentences may be silent for as long as its listener was told to wait.
    setPatience(running_ == TransferKind::sentences ? 0 : membersPatience_);
    callMember(command);
}

// A receiver that was stopped ends the record that it is at: the next transfer would meet it in
// the middle. Connecting hears the line out by itself.
void Worker::hearOut(const surface::Member& member) {
    constexpr double kRecord = 0.5;  // the longest takes about this long at 9600 baud
    const bool talks = connected_ && control_->lastTransfer().ending == Ending::cancelled;
    if (talks && member.role == surface::Role::transfers) {
        pause(kRecord);
        control_->ResetComBuffers();
    }
}

void Worker::callMember(const Command& command) {
    const surface::Result result = command.member->call(control(), command.arguments);
    if (commands_.isStopped() && command.member->role == surface::Role::transfers) {
        stopReceiver();
    }
    keepConnection(*command.member, result);
    tellEnd(*command.member, result);
}

// The listener closes the connection, and a receiver that was unplugged has none.
void Worker::keepConnection(const surface::Member& member, const surface::Result& result) {
    const bool gone = member.role == surface::Role::transfers &&
                      control_->lastTransfer().ending == Ending::deviceGone;
    if (member.role == surface::Role::connects) {
        connected_ = std::get<bool>(result);
    } else if (member.role == surface::Role::disconnects || gone ||
               member.transfer == TransferKind::sentences) {
        connected_ = false;
    }
}

MemberEnd Worker::endOf(const surface::Member& member, const surface::Result& result) const {
    MemberEnd end;
    end.member = &member;
    end.result = variantOf(result);
    end.connected = connected_;
    return end;
}

void Worker::tellEnd(const surface::Member& member, const surface::Result& result) {
    MemberEnd end = endOf(member, result);
    if (member.role == surface::Role::transfers) {
        end.records = std::make_shared<const Records>(control_->records());
        end.transfer = control_->lastTransfer();
    } else if (member.role == surface::Role::connects) {
        end.connection = control_->lastConnection();
    }
    tell(std::move(end));
}

void Worker::tell(MemberEnd end) {
    outbox_.put([this, end = std::move(end)] { form_.memberEnded(end); });
}

// Where handlers may act: those that end others do, once they wait.
void Worker::yield() {
    if (commands_.isStopped()) {
        stopReceiver();
        return;
    }
    while (const auto ender = commands_.nextEnder()) {
        callMember(*ender);
    }
}

// In the receiver's own terms, so that it answers the next member; once, and not to whom the
// listener listens.
void Worker::stopReceiver() {
    if (std::exchange(receiverStopped_, true)) {
        return;
    }
    if (running_ != TransferKind::sentences) {
        control_->StopTransfert();
    }
    control_->StopPvtData();
    control_->StopNMEA();
}

void Worker::raise(const surface::Event& event, std::span<const surface::EventValue> values) {
    QVariantList list;
    for (const surface::EventValue& value : values) {
        list.append(variantOf(value));
    }
    outbox_.put([this, &event, list = std::move(list)] { form_.eventRaised(event, list); });
    surface::visitTold(event.tells, control_->records(), [&](const auto& record) {
        outbox_.put([this, tells = event.tells, told = ToldRecord(record)] {
            form_.recordTold(tells, told);
        });
    });
    yield();
}

void Worker::messageBox(const std::string& text, BoxIcon icon) {
    const auto box = std::make_shared<Box>();
    box->text = QString::fromStdString(text);
    box->icon = icon;
    outbox_.put([this, box] { form_.boxOpened(box); });
    Woken woken;
    do {
        woken = commands_.waitFor([&] { return box->answered.load(); });
        yield();
    } while (woken == Woken::byEnder);
    outbox_.put([this] { form_.boxClosed(); });
}

void Worker::setMousePointer(MousePointer pointer) {
    outbox_.put([this, pointer] { form_.pointerChanged(pointer); });
}

bool Worker::stopRequested() {
    if (farewell_) {
        return std::chrono::steady_clock::now() >= *farewell_;
    }
    return commands_.isToEnd() || SystemHost::stopRequested();
}

std::string Worker::portDevice(int number) {
    return device_.empty() ? SystemHost::portDevice(number) : device_;
}

char Worker::decimalSeparator() {
    return separator_ == 0 ? SystemHost::decimalSeparator() : separator_;
}

}  // namespace marlune::qt
