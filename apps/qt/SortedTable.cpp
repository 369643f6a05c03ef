#include <QtCore/QCollator>
#include <algorithm>
#include <numeric>

#include "TableCells.h"
#include "marlune/qt/RecordModel.h"

namespace marlune::qt {
namespace {

// Empty cells stand last in either direction.
class CellOrder {
public:
    explicit CellOrder(Qt::SortOrder order) : descending_(order == Qt::DescendingOrder) {
        collator_.setNumericMode(true);
        collator_.setCaseSensitivity(Qt::CaseInsensitive);
    }

    bool operator()(const CellKey& a, const CellKey& b) const {
        const bool emptyA = std::holds_alternative<std::monostate>(a);
        const bool emptyB = std::holds_alternative<std::monostate>(b);
        if (emptyA || emptyB) {
            return !emptyA && emptyB;
        }
        return descending_ ? isLess(b, a) : isLess(a, b);
    }

private:
    [[nodiscard]] bool isLess(const CellKey& a, const CellKey& b) const {
        if (const QString* const text = std::get_if<QString>(&a)) {
            return collator_.compare(*text, std::get<QString>(b)) < 0;
        }
        return std::get<double>(a) < std::get<double>(b);
    }

    QCollator collator_;
    bool descending_;
};

QVariant sortValue(const CellKey& key) {
    if (const QString* const text = std::get_if<QString>(&key)) {
        return *text;
    }
    const double* const number = std::get_if<double>(&key);
    return number == nullptr ? QVariant() : QVariant(*number);
}

int placeIn(const std::vector<int>& places, int index) {
    return index >= 0 && index < static_cast<int>(places.size())
               ? places[static_cast<std::size_t>(index)]
               : -1;
}

}  // namespace

struct Q_DECL_HIDDEN SortedTable::Order {
    int column = -1;
    Qt::SortOrder direction = Qt::AscendingOrder;
    std::vector<int> records;  // of the rows
    std::vector<int> rows;     // of the records
    Units units = Units::metric;
};

SortedTable::SortedTable(std::unique_ptr<TableCells> cells, QObject* parent)
    : QAbstractTableModel(parent), cells_(std::move(cells)), order_(std::make_unique<Order>()) {}

SortedTable::~SortedTable() = default;

TableCells& SortedTable::cells() const {
    return *cells_;
}

Units SortedTable::units() const {
    return order_->units;
}

void SortedTable::setUnits(Units units) {
    order_->units = units;
    if (rowCount() > 0) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    }
}

int SortedTable::recordOf(int row) const {
    return placeIn(order_->records, row);
}

int SortedTable::rowOf(int record) const {
    return placeIn(order_->rows, record);
}

int SortedTable::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(order_->records.size());
}

int SortedTable::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : cells_->columns();
}

QVariant SortedTable::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const int record = recordOf(index.row());
    switch (role) {
        case Qt::DisplayRole:
            return cells_->text(record, index.column(), order_->units);
        case SortRole:
            return sortValue(cells_->key(record, index.column()));
        case Qt::TextAlignmentRole: {
            const bool isText =
                std::holds_alternative<QString>(cells_->key(record, index.column()));
            const Qt::Alignment side = isText ? Qt::AlignLeading : Qt::AlignTrailing;
            return static_cast<int>(side | Qt::AlignVCenter);
        }
        default:
            return {};
    }
}

QVariant SortedTable::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole || section < 0) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    if (orientation == Qt::Vertical) {
        return section < rowCount() ? QVariant(recordOf(section) + 1) : QVariant();
    }
    return section < columnCount() ? QVariant(cells_->title(section)) : QVariant();
}

void SortedTable::sort(int column, Qt::SortOrder order) {
    order_->column = column < columnCount() ? column : -1;
    order_->direction = order;
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    const std::vector<int> records = order_->records;
    arrangeRows();
    QModelIndexList after;
    for (const QModelIndex& index : before) {
        after.append(createIndex(rowOf(placeIn(records, index.row())), index.column()));
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void SortedTable::arrangeRows() {
    std::vector<int>& records = order_->records;
    records.resize(static_cast<std::size_t>(cells_->records()));
    std::iota(records.begin(), records.end(), 0);
    if (order_->column >= 0) {
        std::vector<CellKey> keys;
        keys.reserve(records.size());
        for (const int record : records) {
            keys.push_back(cells_->key(record, order_->column));
        }
        const CellOrder isBefore(order_->direction);
        std::ranges::stable_sort(records, [&](int a, int b) {
            return isBefore(keys[static_cast<std::size_t>(a)], keys[static_cast<std::size_t>(b)]);
        });
    }
    order_->rows.resize(records.size());
    for (std::size_t row = 0; row < records.size(); ++row) {
        order_->rows[static_cast<std::size_t>(records[row])] = static_cast<int>(row);
    }
}

void SortedTable::replaceRows(const std::function<void()>& replace) {
    beginResetModel();
    replace();
    arrangeRows();
    endResetModel();
}

void SortedTable::appendRow(const std::function<void()>& append) {
    const int last = rowCount();
    beginInsertRows({}, last, last);
    append();
    order_->records.push_back(last);
    order_->rows.push_back(last);
    endInsertRows();
}

}  // namespace marlune::qt
