// Records as tables for Qt's views. Models know data: no view, no thread and no receiver.
//
// All of them live on the user interface's thread. A cell without a value is empty. Under SortRole
// a cell gives what its column sorts by (a number where the text has a unit); sort() does it, and
// keeps the order of equal ones.
#pragma once

#include <QtCore/QAbstractTableModel>
#include <functional>
#include <memory>
#include <vector>

#include "marlune/Records.h"
#include "marlune/qt/Export.h"
#include "marlune/qt/Units.h"

namespace marlune::qt {

enum RecordRole { SortRole = Qt::UserRole };

class TableCells;

// What the tables have in common: rows that are sorted, and read in the user's units.
class MARLUNE_QT_EXPORT SortedTable : public QAbstractTableModel {
    Q_OBJECT

public:
    ~SortedTable() override;

    [[nodiscard]] Units units() const;
    void setUnits(Units units);

    // The place of a row's record in the order in which the records came, and back; -1 for none.
    [[nodiscard]] int recordOf(int row) const;
    [[nodiscard]] int rowOf(int record) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index,
                                int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    // Column -1 is the order in which the records came. Rows that replace others are sorted in the
    // same way.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

protected:
    SortedTable(std::unique_ptr<TableCells> cells, QObject* parent);
    // What stands in the rows, in the order in which they came. It changes in these alone.
    [[nodiscard]] TableCells& cells() const;
    void replaceRows(const std::function<void()>& replace);
    void appendRow(const std::function<void()>& append);

private:
    struct Order;

    void arrangeRows();

    std::unique_ptr<TableCells> cells_;
    std::unique_ptr<Order> order_;
};

// Waypoints, the points of a track, or the points of a route.
class MARLUNE_QT_EXPORT RecordModel : public SortedTable {
    Q_OBJECT

public:
    enum class Kind { waypoints, trackPoints, routePoints };
    Q_ENUM(Kind)

    explicit RecordModel(Kind kind, QObject* parent = nullptr);
    ~RecordModel() override;

    [[nodiscard]] Kind kind() const;

    // Replace all rows; records of another kind than the model's are refused with a warning of Qt's
    // and leave it as it is.
    void setWaypoints(std::vector<WaypointRecord> waypoints);
    void setTrackPoints(std::vector<TrackPointRecord> points);
    void setRoutePoints(std::vector<RoutePointRecord> points);
    // Add a row behind the others, whatever the order of sorting.
    void append(const WaypointRecord& waypoint);
    void append(const TrackPointRecord& point);
    void append(const RoutePointRecord& point);
    void clear();

private:
    Kind kind_;
};

// The tracks of a receiver or a file, one a row: name, points, length, climb, duration, start.
class MARLUNE_QT_EXPORT TrackModel : public SortedTable {
    Q_OBJECT

public:
    explicit TrackModel(QObject* parent = nullptr);
    ~TrackModel() override;

    void setTracks(std::vector<TrackRecord> tracks);
    // In the order in which they came.
    [[nodiscard]] const std::vector<TrackRecord>& tracks() const;

private:
    std::vector<TrackRecord> tracks_;
};

// The routes: number, name, points, length.
class MARLUNE_QT_EXPORT RouteModel : public SortedTable {
    Q_OBJECT

public:
    explicit RouteModel(QObject* parent = nullptr);
    ~RouteModel() override;

    void setRoutes(std::vector<RouteRecord> routes);
    [[nodiscard]] const std::vector<RouteRecord>& routes() const;

private:
    std::vector<RouteRecord> routes_;
};

}  // namespace marlune::qt
