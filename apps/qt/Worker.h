// The control on a thread of its own: it does what the user interface commands and tells the form
// what happens.
#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>
#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <thread>
#include <variant>

#include "Commands.h"
#include "Outbox.h"
#include "marlune/SystemHost.h"

namespace marlune::qt {

// A message box of the control's, which waits for its answer.
struct Box {
    QString text;
    BoxIcon icon = BoxIcon::none;
    std::atomic<bool> answered{false};
};

// How a member ended, and how things stand then.
struct MemberEnd {
    const surface::Member* member = nullptr;
    QVariant result;
    bool connected = false;
    std::shared_ptr<const Records> records;      // null for a member that transfers nothing
    TransferReport transfer;                     // meaningless without them
    std::optional<ConnectionReport> connection;  // of a member that connects
};

// A record beside an event.
using ToldRecord = std::variant<WaypointRecord, TrackRecord, TrackPointRecord, RouteRecord,
                                RoutePointRecord, RouteLinkRecord, FixRecord>;

// The user interface's side: each function is called on its thread.
class Form {
public:
    Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;
    virtual ~Form() = default;

    virtual void eventRaised(const surface::Event& event, const QVariantList& values) = 0;
    virtual void recordTold(surface::Tells tells, const ToldRecord& record) = 0;
    virtual void boxOpened(const std::shared_ptr<Box>& box) = 0;
    // Nobody waits for the answer any more.
    virtual void boxClosed() = 0;
    virtual void pointerChanged(MousePointer pointer) = 0;
    virtual void memberEnded(const MemberEnd& end) = 0;
};

class Worker : private SystemHost, private NamedEvents {
public:
    // The form lives on the outbox's thread, and longer than the outbox delivers.
    Worker(Form& form, Outbox& outbox) : form_(form), outbox_(outbox) {}
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    // Ends what runs.
    ~Worker() override;

    // For the user interface's thread.

    void command(Command command);
    void stop();
    void answer(Box& box);

    // For settings, on the control's thread.

    using SystemHost::addDriveFolder;
    using SystemHost::setDocumentsFolder;
    // Made when it is asked for first: what the host says of folders until then holds for it.
    GpsControl& control();
    // What every number means; empty for the system's own meaning.
    void setDevice(std::string device) { device_ = std::move(device); }
    // 0 for the locale's.
    void setSeparator(char separator) { separator_ = separator; }
    void setMembersPatience(double seconds) { membersPatience_ = seconds; }

private:
    void run();
    void perform(const Command& command);
    void performMember(const Command& command);
    void hearOut(const surface::Member& member);
    void callMember(const Command& command);
    [[nodiscard]] MemberEnd endOf(const surface::Member& member,
                                  const surface::Result& result) const;
    void tellEnd(const surface::Member& member, const surface::Result& result);
    void tell(MemberEnd end);
    void keepConnection(const surface::Member& member, const surface::Result& result);
    void yield();
    void stopReceiver();

    void raise(const surface::Event& event, std::span<const surface::EventValue> values) override;
    void messageBox(const std::string& text, BoxIcon icon) override;
    void setMousePointer(MousePointer pointer) override;
    void processEvents() override { yield(); }
    bool stopRequested() override;
    std::string portDevice(int number) override;
    char decimalSeparator() override;

    Form& form_;
    Outbox& outbox_;
    Commands commands_;
    std::unique_ptr<GpsControl> control_;
    std::string device_;
    char separator_ = 0;
    double membersPatience_ = 0;
    bool connected_ = false;
    TransferKind running_ = TransferKind::none;
    bool receiverStopped_ = false;                                   // since the member began
    std::optional<std::chrono::steady_clock::time_point> farewell_;  // ends then
    std::thread thread_;                                             // from the first command on
};

}  // namespace marlune::qt
