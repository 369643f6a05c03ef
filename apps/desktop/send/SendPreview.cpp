#include "desktop/send/SendPreview.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>
#include <QtGui/QFont>
#include <algorithm>
#include <array>
#include <utility>

namespace marlune::desktop {
namespace {

struct LossName {
    bool Losses::*loss;
    const char* one;   // in a row
    const char* many;  // of all rows
};
constexpr std::array kLossNames = {
    LossName{&Losses::name, QT_TRANSLATE_NOOP("SendPreview", "name"),
             QT_TRANSLATE_N_NOOP("SendPreview", "%n name(s) change")},
    LossName{&Losses::comment, QT_TRANSLATE_NOOP("SendPreview", "comment"),
             QT_TRANSLATE_N_NOOP("SendPreview", "%n comment(s) are cut or lost")},
    LossName{&Losses::symbol, QT_TRANSLATE_NOOP("SendPreview", "symbol"),
             QT_TRANSLATE_N_NOOP("SendPreview", "%n symbol(s) are lost")},
    LossName{&Losses::altitude, QT_TRANSLATE_NOOP("SendPreview", "altitude"),
             QT_TRANSLATE_N_NOOP("SendPreview", "%n altitude(s) are lost")},
    LossName{&Losses::time, QT_TRANSLATE_NOOP("SendPreview", "date"),
             QT_TRANSLATE_N_NOOP("SendPreview", "%n date(s) are lost")},
    LossName{&Losses::more, QT_TRANSLATE_NOOP("SendPreview", "depth, temperature, alarm"),
             QT_TRANSLATE_N_NOOP("SendPreview", "%n depth(s), temperatures or alarms are lost")},
};

QString previewText(const char* text, int count = -1) {
    return QCoreApplication::translate("SendPreview", text, nullptr, count);
}

QString lossText(const Losses& losses) {
    QStringList names;
    for (const LossName& each : kLossNames) {
        if (losses.*each.loss) {
            names.append(previewText(each.one));
        }
    }
    return names.join(QStringLiteral(", "));
}

}  // namespace

int countOf(const Records& records, GpxKind kind) {
    switch (kind) {
        case GpxKind::waypoints:
            return static_cast<int>(records.waypoints.size());
        case GpxKind::routes:
            return static_cast<int>(records.routes.size());
        case GpxKind::tracks:
            break;
    }
    return static_cast<int>(records.tracks.size());
}

SendPreview::SendPreview(const Records& records, GpxKind kind, const Rehearsal& rehearsal,
                         QObject* parent)
    : QAbstractTableModel(parent) {
    switch (kind) {
        case GpxKind::waypoints:
            for (const WaypointRecord& each : records.waypoints) {
                add(each, rehearsal.waypoint(each));
            }
            break;
        case GpxKind::routes:
            for (const RouteRecord& each : records.routes) {
                add(each, rehearsal.route(each));
            }
            break;
        case GpxKind::tracks:
            for (const TrackRecord& each : records.tracks) {
                add(each, rehearsal.track(each));
            }
            break;
    }
}

template <class Record>
void SendPreview::add(const Record& record, const std::optional<Record>& kept) {
    Row row;
    row.name = QString::fromStdString(record.name);
    row.sendable = kept.has_value();
    if (kept) {
        row.kept = QString::fromStdString(kept->name);
        row.losses = lossesOf(record, *kept);
    }
    rows_.push_back(std::move(row));
}

int SendPreview::changed() const {
    return static_cast<int>(std::count_if(rows_.begin(), rows_.end(), [](const Row& row) {
        return row.sendable && row.losses.any();
    }));
}

int SendPreview::unsendable() const {
    return static_cast<int>(
        std::count_if(rows_.begin(), rows_.end(), [](const Row& row) { return !row.sendable; }));
}

QString SendPreview::summary() const {
    QStringList sentences;
    for (const LossName& each : kLossNames) {
        const auto count = std::count_if(rows_.begin(), rows_.end(),
                                         [&](const Row& row) { return row.losses.*each.loss; });
        if (count > 0) {
            sentences.append(previewText(each.many, static_cast<int>(count)));
        }
    }
    if (unsendable() > 0) {
        sentences.append(tr("%n cannot be sent, nor what comes behind", nullptr, unsendable()));
    }
    return sentences.join(QStringLiteral(", "));
}

int SendPreview::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : records();
}

int SendPreview::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant SendPreview::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    if (role == Qt::FontRole && (!row.sendable || (index.column() == kept && row.losses.name))) {
        QFont font;
        font.setBold(true);
        return font;
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (index.column()) {
        case name:
            return row.name;
        case kept:
            return row.sendable ? row.kept : tr("cannot be sent");
        default:
            return lossText(row.losses);
    }
}

QVariant SendPreview::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
        case name:
            return tr("Name");
        case kept:
            return tr("In the receiver");
        default:
            return tr("Changed or lost");
    }
}

}  // namespace marlune::desktop
