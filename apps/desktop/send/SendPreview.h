// What the connected receiver would keep of the records of one kind: a table for the user to look
// at before anything is sent.
#pragma once

#include <QtCore/QAbstractTableModel>
#include <QtCore/QString>
#include <optional>
#include <vector>

#include "control/Rehearsal.h"
#include "marlune/Gpx.h"
#include "marlune/Records.h"

namespace marlune::desktop {

class SendPreview : public QAbstractTableModel {
    Q_OBJECT

public:
    SendPreview(const Records& records, GpxKind kind, const Rehearsal& rehearsal,
                QObject* parent = nullptr);

    [[nodiscard]] int records() const { return static_cast<int>(rows_.size()); }
    // How many lose something, and how many cannot be sent at all.
    [[nodiscard]] int changed() const;
    [[nodiscard]] int unsendable() const;
    // "3 names change, 12 symbols are lost"; empty when nothing is.
    [[nodiscard]] QString summary() const;

    enum Column { name, kept, lost, columns };
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index,
                                int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;

private:
    struct Row {
        QString name;
        QString kept;  // its name in the receiver
        bool sendable = true;
        Losses losses;
    };
    template <class Record>
    void add(const Record& record, const std::optional<Record>& kept);

    std::vector<Row> rows_;
};

// How many records of that kind there are.
int countOf(const Records& records, GpxKind kind);

}  // namespace marlune::desktop
