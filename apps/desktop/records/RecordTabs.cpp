#include "desktop/records/RecordTabs.h"

#include <QtWidgets/QHeaderView>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QTableView>

namespace marlune::desktop {
namespace {

QTableView* makeTable(QAbstractItemModel* model, const QString& name) {
    auto* table = new QTableView;
    table->setModel(model);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setAlternatingRowColors(true);
    table->setWordWrap(false);
    table->setTabKeyNavigation(false);  // Tab goes on to the next part of the window
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
    table->setAccessibleName(name);
    table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    table->horizontalHeader()->setSortIndicatorClearable(true);
    table->setSortingEnabled(true);
    return table;
}

// What lies above shows what there is, what lies below the chosen one's points.
QSplitter* inTwoParts(QTableView* above, QTableView* below) {
    auto* parts = new QSplitter(Qt::Vertical);
    parts->addWidget(above);
    parts->addWidget(below);
    parts->setChildrenCollapsible(false);
    return parts;
}

// As wide as the first rows need; asking all of them would take as long as there are rows.
void fitColumns(QTableView& table) {
    constexpr int kRows = 50;
    table.horizontalHeader()->setResizeContentsPrecision(kRows);
    table.resizeColumnsToContents();
}

template <class Chosen>
void onChoice(QTableView& table, QObject* context, Chosen chosen) {
    QObject::connect(
        table.selectionModel(), &QItemSelectionModel::currentRowChanged, context,
        [chosen](const QModelIndex& current) { chosen(current.isValid() ? current.row() : -1); });
}

}  // namespace

RecordTabs::RecordTabs(QWidget* parent)
    : QTabWidget(parent),
      waypoints_(new qt::RecordModel(qt::RecordModel::Kind::waypoints, this)),
      tracks_(new qt::TrackModel(this)),
      trackPoints_(new qt::RecordModel(qt::RecordModel::Kind::trackPoints, this)),
      routes_(new qt::RouteModel(this)),
      routePoints_(new qt::RecordModel(qt::RecordModel::Kind::routePoints, this)),
      waypointTable_(makeTable(waypoints_, tr("Waypoints"))),
      trackTable_(makeTable(tracks_, tr("Tracks"))),
      trackPointTable_(makeTable(trackPoints_, tr("Points of the track"))),
      routeTable_(makeTable(routes_, tr("Routes"))),
      routePointTable_(makeTable(routePoints_, tr("Points of the route"))) {
    addTab(waypointTable_, {});
    addTab(inTwoParts(trackTable_, trackPointTable_), {});
    addTab(inTwoParts(routeTable_, routePointTable_), {});
    takeTitles();
    onChoice(*waypointTable_, this,
             [this](int row) { Q_EMIT waypointChosen(waypoints_->recordOf(row)); });
    onChoice(*trackTable_, this, [this](int row) { showTrack(row); });
    onChoice(*routeTable_, this, [this](int row) { showRoute(row); });
    onChoice(*trackPointTable_, this,
             [this](int row) { Q_EMIT trackPointChosen(trackPoints_->recordOf(row)); });
}

void RecordTabs::takeTitles() {
    const auto title = [this](int tab, const QString& name, int count) {
        setTabText(tab, count == 0 ? name : QStringLiteral("%1 (%2)").arg(name).arg(count));
    };
    title(0, tr("&Waypoints"), waypoints_->rowCount());
    title(1, tr("&Tracks"), tracks_->rowCount());
    title(2, tr("R&outes"), routes_->rowCount());
}

void RecordTabs::setRecords(const Records& records) {
    waypoints_->setWaypoints(records.waypoints);
    tracks_->setTracks(records.tracks);
    routes_->setRoutes(records.routes);
    for (QTableView* table : {waypointTable_, trackTable_, routeTable_}) {
        fitColumns(*table);
    }
    takeTitles();
    showTrack(-1);
    showRoute(-1);
    chooseTrack(records.tracks.empty() ? -1 : 0);
}

void RecordTabs::setUnits(qt::Units units) {
    for (qt::RecordModel* model : {waypoints_, trackPoints_, routePoints_}) {
        model->setUnits(units);
    }
    tracks_->setUnits(units);
    routes_->setUnits(units);
}

void RecordTabs::chooseWaypoint(int waypoint) {
    setCurrentIndex(0);
    waypointTable_->selectRow(waypoints_->rowOf(waypoint));
}

void RecordTabs::chooseTrack(int track) {
    if (track >= 0) {
        trackTable_->selectRow(tracks_->rowOf(track));
    }
}

int RecordTabs::chosenTrack() const {
    return tracks_->recordOf(trackTable_->currentIndex().row());
}

void RecordTabs::showTrack(int row) {
    const int track = row < 0 ? -1 : tracks_->recordOf(row);
    if (track < 0) {
        trackPoints_->clear();
    } else {
        trackPoints_->setTrackPoints(tracks_->tracks()[static_cast<std::size_t>(track)].points);
        fitColumns(*trackPointTable_);
    }
    Q_EMIT trackChosen(track);
}

void RecordTabs::showRoute(int row) {
    const int route = row < 0 ? -1 : routes_->recordOf(row);
    if (route < 0) {
        routePoints_->clear();
    } else {
        routePoints_->setRoutePoints(routes_->routes()[static_cast<std::size_t>(route)].points);
        fitColumns(*routePointTable_);
    }
    Q_EMIT routeChosen(route);
}

}  // namespace marlune::desktop
