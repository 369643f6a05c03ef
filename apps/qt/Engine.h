// What stands behind the widget on the user interface's thread: what the control is told to be, and
// what it told last.
#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QMessageBox>
#include <type_traits>
#include <utility>

#include "Worker.h"
#include "marlune/qt/GpsControlWidget.h"

namespace marlune::qt {

// The row of the member whose slot is called. A slot without a row does not compile, nor one with
// other parameters.
template <class... Arguments>
struct CalledMember {
    consteval CalledMember(const char* name) : row(*surface::findByName(surface::kMembers, name)) {
        if (!surface::detail::declares<Arguments...>(row.parameters)) {
            throw "the member's row has other parameters";
        }
    }
    const surface::Member& row;
};

class Q_DECL_HIDDEN GpsControlWidget::Engine : private Form {
public:
    explicit Engine(GpsControlWidget& widget);

    // What the properties say.
    QString mark = "GRM";
    int port = 1;
    QString device;
    bool debug = false;
    QString separator;
    double patience = 30;

    // What the members that have ended left.
    std::shared_ptr<const Records> records = std::make_shared<Records>();
    TransferReport transfer;
    ConnectionReport connection;
    QString ident;
    QString protocols;
    bool connected = false;

    [[nodiscard]] bool isBusy() const { return members_ > 0; }

    // Gives a property its value; whoever watches it is told from the event loop.
    template <class Value, class Signal>
    void change(Value& property, const std::type_identity_t<Value>& value, Signal changed) {
        if (std::exchange(property, value) != value) {
            outbox_.post([this, value, changed] { Q_EMIT(widget_.*changed)(value); });
        }
    }
    template <class... Arguments>
    void call(std::type_identity_t<CalledMember<Arguments...>> member,
              const Arguments&... arguments) {
        callRow(member.row, {argumentOf(arguments)...});
    }
    void set(std::function<void(Worker&)> setting);
    void stop() { worker_.stop(); }

private:
    static surface::Argument argumentOf(const std::string& text) { return text; }
    static surface::Argument argumentOf(std::int16_t number) { return number; }
    static surface::Argument argumentOf(marlune::numPort port) {
        return static_cast<std::int16_t>(port);
    }
    void callRow(const surface::Member& member, std::vector<surface::Argument> arguments);
    void tellBusy();
    void keep(const MemberEnd& end);
    void showBox(const std::shared_ptr<Box>& box);

    void eventRaised(const surface::Event& event, const QVariantList& values) override;
    void recordTold(surface::Tells tells, const ToldRecord& record) override;
    void boxOpened(const std::shared_ptr<Box>& box) override;
    void boxClosed() override;
    void pointerChanged(MousePointer pointer) override;
    void memberEnded(const MemberEnd& end) override;

    GpsControlWidget& widget_;
    int members_ = 0;  // called and not ended
    bool busyTold_ = false;
    QPointer<QMessageBox> box_;
    Outbox outbox_;
    Worker worker_;  // ends before what it tells to
};

}  // namespace marlune::qt
