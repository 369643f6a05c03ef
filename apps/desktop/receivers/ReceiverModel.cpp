#include "desktop/receivers/ReceiverModel.h"

#include <QtCore/QCoreApplication>
#include <utility>

namespace marlune::desktop {
namespace {

QString receiverText(const char* text) {
    return QCoreApplication::translate("Receiver", text);
}

QString kindOf(const finder::PortEntry& port) {
    switch (port.kind) {
        case finder::PortKind::usb:
            return receiverText(QT_TRANSLATE_NOOP("Receiver", "unit on USB"));
        case finder::PortKind::drive:
        case finder::PortKind::mtp:
            return receiverText(QT_TRANSLATE_NOOP("Receiver", "unit that is a drive"));
        case finder::PortKind::builtIn:
            return receiverText(QT_TRANSLATE_NOOP("Receiver", "virtual, to try the program"));
        case finder::PortKind::serial:
            break;
    }
    return receiverText(QT_TRANSLATE_NOOP("Receiver", "serial port"));
}

}  // namespace

QString Receiver::title() const {
    if (!identity.isEmpty()) {
        return identity;
    }
    if (isVirtual()) {
        return path().section(QLatin1Char(':'), 1);
    }
    const QString maker = QString::fromStdString(port.vendor + " " + port.product).trimmed();
    return maker.isEmpty() ? path() : maker;
}

QString Receiver::subtitle() const {
    const QString kind = isVirtual() ? QString::fromStdString(port.product) : path();
    const QString what = QStringLiteral("%1 – %2").arg(kindOf(port), kind);
    return note.isEmpty() ? what : what + QStringLiteral("\n") + note;
}

void ReceiverModel::setReceivers(std::vector<Receiver> receivers) {
    for (Receiver& each : receivers) {
        if (const int row = rowOf(each.path()); row >= 0) {
            const Receiver& known = receiver(row);
            each.identity = known.identity;
            each.mark = each.mark.empty() ? known.mark : each.mark;
        }
    }
    beginResetModel();
    receivers_ = std::move(receivers);
    endResetModel();
}

void ReceiverModel::update(const Receiver& receiver) {
    const int row = rowOf(receiver.path());
    if (row < 0) {
        beginInsertRows({}, 0, 0);
        receivers_.insert(receivers_.begin(), receiver);
        endInsertRows();
        return;
    }
    receivers_[static_cast<std::size_t>(row)] = receiver;
    Q_EMIT dataChanged(index(row), index(row));
}

const Receiver& ReceiverModel::receiver(int row) const {
    return receivers_.at(static_cast<std::size_t>(row));
}

int ReceiverModel::rowOf(const QString& path) const {
    for (std::size_t i = 0; i < receivers_.size(); ++i) {
        if (receivers_[i].path() == path) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

int ReceiverModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(receivers_.size());
}

QVariant ReceiverModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const Receiver& each = receiver(index.row());
    switch (role) {
        case Qt::DisplayRole:
            return QString(each.title() + QLatin1Char('\n') + each.subtitle());
        case Qt::ToolTipRole:
        case Qt::AccessibleDescriptionRole:
            return each.subtitle();
        case Qt::AccessibleTextRole:
            return each.title();
        default:
            return {};
    }
}

}  // namespace marlune::desktop
