// The map: tracks, routes and points on a Mercator canvas, above tiles where the user has some.
//
// The mouse pans and its wheel zooms; so do the arrow keys, + and -. Home fits everything in.
#pragma once

#include <QtWidgets/QWidget>
#include <optional>
#include <vector>

#include "desktop/map/MapColours.h"
#include "desktop/map/Shapes.h"
#include "desktop/map/TileLayer.h"
#include "desktop/map/Viewport.h"
#include "marlune/qt/Units.h"

namespace marlune::desktop {

class MapCanvas : public QWidget {
    Q_OBJECT

public:
    // The layer must outlive the map.
    explicit MapCanvas(TileLayer& tiles, QWidget* parent = nullptr);

    [[nodiscard]] const Viewport& view() const { return view_; }
    [[nodiscard]] std::optional<GeoPoint> cursorPosition() const { return cursor_; }

    void setRecords(const Records& records);
    void setUnits(qt::Units units);
    // Drawn in front of the others, and brought into view; -1 for none.
    void chooseTrack(int track);
    void chooseRoute(int route);
    void choosePlace(int place);
    // A mark on the map, as the profile's cursor.
    void setCursorPosition(std::optional<GeoPoint> position);
    // Where the receiver is now: the last of the trail. Follows it when asked to.
    void addToTrail(GeoPoint position);
    void clearTrail();
    void setFollowing(bool following);

public Q_SLOTS:
    // Shows everything there is.
    void fit();
    void zoomIn();
    void zoomOut();

Q_SIGNALS:
    // Of the mouse; nothing when it has left.
    void pointed(std::optional<marlune::desktop::GeoPoint> position);
    void placeClicked(int place);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    [[nodiscard]] QSize sizeHint() const override { return {480, 420}; }

private:
    void zoomBy(double levels);
    [[nodiscard]] bool panByKey(int key);
    void showPath(const std::vector<Path>& paths, int number);
    void fitShown();
    void describe();
    [[nodiscard]] int placeAt(QPointF point) const;
    [[nodiscard]] QPointF onScreen(WorldPoint world) const;

    void paintGraticule(QPainter& painter, const MapColours& colours) const;
    void paintPaths(QPainter& painter, const MapColours& colours) const;
    void paintPath(QPainter& painter, const Path& path) const;
    void paintChosen(QPainter& painter, const MapColours& colours, const Path& path) const;
    void paintPlaces(QPainter& painter, const MapColours& colours) const;
    void paintTrail(QPainter& painter, const MapColours& colours) const;
    void paintCursor(QPainter& painter, const MapColours& colours) const;
    void paintScaleBar(QPainter& painter, const MapColours& colours) const;
    void paintAttribution(QPainter& painter, const MapColours& colours) const;

    TileLayer& tiles_;
    Viewport view_;
    Shapes shapes_;
    qt::Units units_ = qt::Units::metric;
    int track_ = -1;
    int route_ = -1;
    int place_ = -1;
    std::optional<GeoPoint> cursor_;
    std::vector<GeoPoint> trail_;
    bool following_ = false;
    std::optional<WorldArea> shown_;  // what the view was fitted to; nothing for the world
    bool isFitted_ = true;            // until the user looks elsewhere
    std::optional<QPointF> dragged_;
    QPointF pressed_;
};

}  // namespace marlune::desktop
