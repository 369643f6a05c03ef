// The tabs with the records: waypoints, tracks with their points, routes with theirs.
#pragma once

#include <QtWidgets/QTabWidget>

#include "marlune/Records.h"
#include "marlune/qt/RecordModel.h"
#include "marlune/qt/Units.h"

class QTableView;

namespace marlune::desktop {

class RecordTabs : public QTabWidget {
    Q_OBJECT

public:
    explicit RecordTabs(QWidget* parent = nullptr);

    void setRecords(const Records& records);
    void setUnits(qt::Units units);
    // As a click into the table.
    void chooseWaypoint(int waypoint);
    void chooseTrack(int track);
    [[nodiscard]] int chosenTrack() const;

    [[nodiscard]] QTableView& waypoints() const { return *waypointTable_; }
    [[nodiscard]] QTableView& tracks() const { return *trackTable_; }
    [[nodiscard]] QTableView& routes() const { return *routeTable_; }

Q_SIGNALS:
    // Records by their place in what setRecords was given; -1 for none.
    void waypointChosen(int waypoint);
    void trackChosen(int track);
    void routeChosen(int route);
    // A point of the chosen track.
    void trackPointChosen(int point);

private:
    void showTrack(int row);
    void showRoute(int row);
    void takeTitles();

    qt::RecordModel* waypoints_;
    qt::TrackModel* tracks_;
    qt::RecordModel* trackPoints_;
    qt::RouteModel* routes_;
    qt::RecordModel* routePoints_;
    QTableView* waypointTable_;
    QTableView* trackTable_;
    QTableView* trackPointTable_;
    QTableView* routeTable_;
    QTableView* routePointTable_;
};

}  // namespace marlune::desktop
