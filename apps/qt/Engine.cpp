#include "Engine.h"

#include <QtCore/QMetaMethod>
#include <array>

namespace marlune::qt {
namespace {

// "StartDownload(QString,int,QString)"
QByteArray signatureOf(const surface::Event& event) {
    QByteArray types;
    for (const surface::Parameter& parameter : event.parameters) {
        types += types.isEmpty() ? "" : ",";
        types += parameter.type == surface::Type::text ? "QString" : "int";
    }
    return QByteArray(event.name.data(), static_cast<qsizetype>(event.name.size())) + "(" + types +
           ")";
}

QMetaMethod signalOf(const surface::Event& event) {
    static const auto all = [] {
        const QMetaObject& meta = GpsControlWidget::staticMetaObject;
        std::array<QMetaMethod, surface::kEvents.size()> methods;
        for (std::size_t i = 0; i < methods.size(); ++i) {
            methods[i] = meta.method(meta.indexOfSignal(signatureOf(surface::kEvents[i])));
        }
        return methods;
    }();
    return all.at(static_cast<std::size_t>(event.id) - 1);
}

QMessageBox::Icon iconOf(BoxIcon icon) {
    switch (icon) {
        case BoxIcon::critical:
            return QMessageBox::Critical;
        case BoxIcon::exclamation:
            return QMessageBox::Warning;
        case BoxIcon::information:
            return QMessageBox::Information;
        case BoxIcon::none:
            break;
    }
    return QMessageBox::NoIcon;
}

// Emits the signal that a record is for.
class RecordSignal {
public:
    RecordSignal(GpsControlWidget& widget, surface::Tells tells) : widget_(widget), tells_(tells) {}

    void operator()(const WaypointRecord& waypoint) const {
        if (tells_ == surface::Tells::proximity) {
            Q_EMIT widget_.proximityReceived(waypoint);
        } else {
            Q_EMIT widget_.waypointReceived(waypoint);
        }
    }
    void operator()(const TrackRecord& track) const { Q_EMIT widget_.trackReceived(track); }
    void operator()(const TrackPointRecord& point) const {
        Q_EMIT widget_.trackPointReceived(point);
    }
    void operator()(const RouteRecord& route) const { Q_EMIT widget_.routeReceived(route); }
    void operator()(const RoutePointRecord& point) const {
        Q_EMIT widget_.routePointReceived(point);
    }
    void operator()(const RouteLinkRecord& /*link*/) const {}  // in the point, in the end
    void operator()(const FixRecord& fix) const { Q_EMIT widget_.fixReceived(fix); }

private:
    GpsControlWidget& widget_;
    surface::Tells tells_;
};

}  // namespace

GpsControlWidget::Engine::Engine(GpsControlWidget& widget)
    : widget_(widget), worker_(*this, outbox_) {
    worker_.setMembersPatience(patience);
}

void GpsControlWidget::Engine::set(std::function<void(Worker&)> setting) {
    Command command;
    command.setting = std::move(setting);
    worker_.command(std::move(command));
}

void GpsControlWidget::Engine::callRow(const surface::Member& member,
                                       std::vector<surface::Argument> arguments) {
    if (++members_ == 1) {
        outbox_.post([this] { tellBusy(); });
    }
    Command command;
    command.member = &member;
    command.arguments = std::move(arguments);
    worker_.command(std::move(command));
}

void GpsControlWidget::Engine::tellBusy() {
    if (std::exchange(busyTold_, isBusy()) != isBusy()) {
        Q_EMIT widget_.busyChanged(isBusy());
    }
}

void GpsControlWidget::Engine::eventRaised(const surface::Event& event,
                                           const QVariantList& values) {
    std::array<QGenericArgument, 3> arguments;
    for (qsizetype i = 0; i < values.size(); ++i) {
        arguments.at(static_cast<std::size_t>(i)) =
            QGenericArgument(values[i].typeName(), values[i].constData());
    }
    signalOf(event).invoke(&widget_, Qt::DirectConnection, arguments[0], arguments[1],
                           arguments[2]);
}

void GpsControlWidget::Engine::recordTold(surface::Tells tells, const ToldRecord& record) {
    std::visit(RecordSignal(widget_, tells), record);
}

// Whoever takes boxes as a signal shows them or not: the control goes on.
void GpsControlWidget::Engine::boxOpened(const std::shared_ptr<Box>& box) {
    if (widget_.isSignalConnected(QMetaMethod::fromSignal(&GpsControlWidget::messageBox))) {
        worker_.answer(*box);
        Q_EMIT widget_.messageBox(box->text, iconOf(box->icon));
    } else {
        showBox(box);
    }
}

void GpsControlWidget::Engine::showBox(const std::shared_ptr<Box>& box) {
    box_ = new QMessageBox(iconOf(box->icon), widget_.window()->windowTitle(), box->text,
                           QMessageBox::Ok, &widget_);
    box_->setTextFormat(Qt::PlainText);
    box_->setAttribute(Qt::WA_DeleteOnClose);
    connect(box_, &QDialog::finished, &widget_, [this, box] { worker_.answer(*box); });
    box_->open();
}

void GpsControlWidget::Engine::boxClosed() {
    if (box_) {
        box_->close();
    }
}

void GpsControlWidget::Engine::pointerChanged(MousePointer pointer) {
    Q_EMIT widget_.waitingChanged(pointer == MousePointer::hourglass);
}

void GpsControlWidget::Engine::keep(const MemberEnd& end) {
    connected = end.connected;
    if (end.records) {
        records = end.records;
        transfer = end.transfer;
    }
    if (end.connection) {
        connection = *end.connection;
    }
    if (end.member->name == "getIdent") {
        ident = end.result.toString();
    } else if (end.member->name == "getProtocoles") {
        protocols = end.result.toString();
    }
    --members_;
}

// A handler may run an event loop, and somebody destroy the widget in there.
void GpsControlWidget::Engine::memberEnded(const MemberEnd& end) {
    const QPointer<GpsControlWidget> widget(&widget_);
    const bool connectionTold = end.connection.has_value() || connected != end.connected;
    keep(end);
    if (end.records) {
        Q_EMIT widget->transferFinished(end.transfer);
    }
    if (widget && connectionTold) {
        Q_EMIT widget->connectionChanged(end.connected);
    }
    if (widget) {
        Q_EMIT widget->memberEnded(
            QString::fromUtf8(end.member->name.data(),
                              static_cast<qsizetype>(end.member->name.size())),
            end.result);
    }
    if (widget) {
        tellBusy();
    }
}

}  // namespace marlune::qt
