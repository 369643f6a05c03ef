// What the cells of a table say and are sorted by, record by record.
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>
#include <QtCore/QString>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "marlune/qt/Units.h"

namespace marlune::qt {

// What a cell is sorted by; nothing for an empty one.
using CellKey = std::variant<std::monostate, double, QString>;

// Records in the order in which they came.
class TableCells {
public:
    TableCells() = default;
    TableCells(const TableCells&) = delete;
    TableCells& operator=(const TableCells&) = delete;
    virtual ~TableCells() = default;

    [[nodiscard]] virtual int records() const = 0;
    [[nodiscard]] virtual int columns() const = 0;
    [[nodiscard]] virtual QString title(int column) const = 0;
    [[nodiscard]] virtual CellKey key(int record, int column) const = 0;
    [[nodiscard]] virtual QString text(int record, int column, Units units) const = 0;
};

// The texts of the tables have one context for translators.
inline QString tableText(const char* text) {
    return QCoreApplication::translate("RecordModel", text);
}

template <class Row>
struct Column {
    const char* title;
    CellKey (*key)(const Row&);
    QString (*text)(const Row&, Units);
};

template <class Row>
class CellsOf : public TableCells {
public:
    explicit CellsOf(std::vector<Column<Row>> columns) : columns_(std::move(columns)) {}

    std::vector<Row> rows;

    [[nodiscard]] int records() const override { return static_cast<int>(rows.size()); }
    [[nodiscard]] int columns() const override { return static_cast<int>(columns_.size()); }
    [[nodiscard]] QString title(int column) const override { return tableText(at(column).title); }
    [[nodiscard]] CellKey key(int record, int column) const override {
        return at(column).key(row(record));
    }
    [[nodiscard]] QString text(int record, int column, Units units) const override {
        return at(column).text(row(record), units);
    }

private:
    [[nodiscard]] const Column<Row>& at(int column) const {
        return columns_[static_cast<std::size_t>(column)];
    }
    [[nodiscard]] const Row& row(int record) const {
        return rows[static_cast<std::size_t>(record)];
    }

    std::vector<Column<Row>> columns_;
};

// Columns of one field each: a text, or a number with what shows it. A field without a value, and
// an empty text, leave their cells empty.

inline CellKey keyOf(const QString& text) {
    return text.isEmpty() ? CellKey() : CellKey(text);
}
inline CellKey keyOf(double number) {
    return number;
}
template <class Value>
CellKey keyOf(const std::optional<Value>& value) {
    return value ? keyOf(*value) : CellKey();
}

template <class Row, auto field>
Column<Row> textColumn(const char* title) {
    return {title, [](const Row& row) { return keyOf(row.*field); },
            [](const Row& row, Units /*units*/) { return row.*field; }};
}

template <class Row, auto field, QString (*show)(double, Units)>
Column<Row> numberColumn(const char* title) {
    return {title, [](const Row& row) { return keyOf(row.*field); },
            [](const Row& row, Units units) {
                const CellKey key = keyOf(row.*field);
                const double* const number = std::get_if<double>(&key);
                return number == nullptr ? QString() : show(*number, units);
            }};
}

// What shows numbers that are read alike in all units.
inline QString countText(double number, Units /*units*/) {
    return QLocale().toString(number, 'f', 0);
}
inline QString dateText(double time, Units /*units*/) {
    return timeText(time);
}
inline QString lastingText(double seconds, Units /*units*/) {
    return durationText(seconds);
}
inline QString warmthText(double celsius, Units /*units*/) {
    return QLocale().toString(celsius, 'f', 1) + " °C";
}

}  // namespace marlune::qt
