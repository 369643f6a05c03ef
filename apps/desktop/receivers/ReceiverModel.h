// The receivers found, as a list for a view.
#pragma once

#include <QtCore/QAbstractListModel>
#include <vector>

#include "desktop/receivers/Receiver.h"

namespace marlune::desktop {

class ReceiverModel : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    // Keeps what is known of those that stay.
    void setReceivers(std::vector<Receiver> receivers);
    // What has become known of a port; one that is not in the list joins it.
    void update(const Receiver& receiver);
    [[nodiscard]] const Receiver& receiver(int row) const;
    // -1 for none.
    [[nodiscard]] int rowOf(const QString& path) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index,
                                int role = Qt::DisplayRole) const override;

private:
    std::vector<Receiver> receivers_;
};

}  // namespace marlune::desktop
