#include "desktop/map/MapCanvas.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QWheelEvent>
#include <array>
#include <cmath>
#include <utility>

#include "desktop/map/Rulers.h"

namespace marlune::desktop {
namespace {

constexpr double kPlaceRadius = 4.5;
constexpr double kMargin = 8;

// A text that can be read on whatever lies below it.
void drawText(QPainter& painter, const MapColours& colours, QPointF baseline, const QString& text,
              const QColor& colour) {
    QPainterPath path;
    path.addText(baseline, painter.font(), text);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(path, QPen(colours.halo(), 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(path, colour);
}

// The piece on the screen, without points that nobody could tell apart.
QPolygonF polylineOf(const std::vector<WorldPoint>& piece, const Viewport& view, double turns) {
    constexpr double kApart = 0.7;
    QPolygonF line;
    for (const WorldPoint& each : piece) {
        const QPointF point = view.screenOf(WorldPoint{each.x + turns, each.y});
        if (line.isEmpty() || &each == &piece.back() ||
            (point - line.back()).manhattanLength() > kApart) {
            line.append(point);
        }
    }
    return line;
}

}  // namespace

MapCanvas::MapCanvas(TileLayer& tiles, QWidget* parent) : QWidget(parent), tiles_(tiles) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setMinimumSize(160, 120);
    setAccessibleName(tr("Map"));
    connect(&tiles_, &TileLayer::changed, this, qOverload<>(&QWidget::update));
    describe();
}

void MapCanvas::setRecords(const Records& records) {
    shapes_ = shapesOf(records);
    track_ = route_ = place_ = -1;
    cursor_.reset();
    describe();
    fit();
}

// What a screen reader says of the picture.
void MapCanvas::describe() {
    setAccessibleDescription(tr("%1 waypoints, %2 tracks, %3 routes")
                                 .arg(shapes_.places.size())
                                 .arg(shapes_.tracks.size())
                                 .arg(shapes_.routes.size()));
}

void MapCanvas::setUnits(qt::Units units) {
    units_ = units;
    update();
}

void MapCanvas::chooseTrack(int track) {
    track_ = track;
    route_ = -1;
    showPath(shapes_.tracks, track);
}

void MapCanvas::chooseRoute(int route) {
    route_ = route;
    track_ = -1;
    showPath(shapes_.routes, route);
}

void MapCanvas::showPath(const std::vector<Path>& paths, int number) {
    if (number >= 0 && static_cast<std::size_t>(number) < paths.size()) {
        const Path& path = paths[static_cast<std::size_t>(number)];
        shown_ = path.pieces.empty() ? std::nullopt : std::optional(path.area);
        fitShown();
    }
    update();
}

void MapCanvas::choosePlace(int place) {
    place_ = place;
    if (place >= 0 && static_cast<std::size_t>(place) < shapes_.places.size()) {
        const WorldPoint at = shapes_.places[static_cast<std::size_t>(place)].at;
        if (!rect().contains(onScreen(at).toPoint())) {
            view_.show(positionOf(at), view_.zoom());
            isFitted_ = false;
        }
    }
    update();
}

void MapCanvas::setCursorPosition(std::optional<GeoPoint> position) {
    cursor_ = position;
    update();
}

void MapCanvas::addToTrail(GeoPoint position) {
    constexpr double kNear = 15;
    constexpr std::size_t kLongest = 20000;
    if (trail_.size() == kLongest) {
        trail_.erase(trail_.begin(), trail_.begin() + kLongest / 2);
    }
    trail_.push_back(position);
    if (following_) {
        view_.show(position, trail_.size() == 1 ? std::max(view_.zoom(), kNear) : view_.zoom());
        isFitted_ = false;
    }
    update();
}

void MapCanvas::clearTrail() {
    trail_.clear();
    update();
}

void MapCanvas::setFollowing(bool following) {
    following_ = following;
    if (following && !trail_.empty()) {
        view_.show(trail_.back(), view_.zoom());
        isFitted_ = false;
        update();
    }
}

void MapCanvas::fit() {
    shown_ = shapes_.area();
    fitShown();
}

void MapCanvas::fitShown() {
    constexpr WorldArea kInhabited = {0, 0.1, 1, 0.8};
    constexpr double kAround = 36;
    isFitted_ = true;
    view_.fit(shown_.value_or(kInhabited), shown_ ? kAround : 0);
    update();
}

void MapCanvas::zoomIn() {
    zoomBy(1);
}

void MapCanvas::zoomOut() {
    zoomBy(-1);
}

void MapCanvas::zoomBy(double levels) {
    view_.zoomAt(QRectF(rect()).center(), levels);
    isFitted_ = false;
    update();
}

void MapCanvas::resizeEvent(QResizeEvent* /*event*/) {
    view_.setSize(size());
    if (isFitted_) {
        fitShown();
    }
}

void MapCanvas::wheelEvent(QWheelEvent* event) {
    constexpr double kNotch = 120;
    view_.zoomAt(event->position(), event->angleDelta().y() / kNotch / 2);
    isFitted_ = false;
    update();
    event->accept();
}

void MapCanvas::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        dragged_ = pressed_ = event->position();
        setCursor(Qt::ClosedHandCursor);
    }
}

void MapCanvas::mouseMoveEvent(QMouseEvent* event) {
    if (dragged_) {
        view_.pan(event->position() - *dragged_);
        dragged_ = event->position();
        isFitted_ = false;
        update();
    }
    Q_EMIT pointed(view_.positionAt(event->position()));
}

void MapCanvas::mouseReleaseEvent(QMouseEvent* event) {
    constexpr double kClick = 4;
    dragged_.reset();
    unsetCursor();
    if ((event->position() - pressed_).manhattanLength() < kClick) {
        if (const int place = placeAt(event->position()); place >= 0) {
            Q_EMIT placeClicked(place);
        }
    }
}

void MapCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
    view_.zoomAt(event->position(), 1);
    isFitted_ = false;
    update();
}

void MapCanvas::leaveEvent(QEvent* /*event*/) {
    Q_EMIT pointed(std::nullopt);
}

bool MapCanvas::panByKey(int key) {
    constexpr double kStep = 48;
    switch (key) {
        case Qt::Key_Left:
            view_.pan({kStep, 0});
            return true;
        case Qt::Key_Right:
            view_.pan({-kStep, 0});
            return true;
        case Qt::Key_Up:
            view_.pan({0, kStep});
            return true;
        case Qt::Key_Down:
            view_.pan({0, -kStep});
            return true;
        default:
            return false;
    }
}

void MapCanvas::keyPressEvent(QKeyEvent* event) {
    if (panByKey(event->key())) {
        isFitted_ = false;
        update();
    } else if (event->key() == Qt::Key_Plus || event->key() == Qt::Key_Equal) {
        zoomIn();
    } else if (event->key() == Qt::Key_Minus) {
        zoomOut();
    } else if (event->key() == Qt::Key_Home) {
        fit();
    } else {
        QWidget::keyPressEvent(event);
    }
}

int MapCanvas::placeAt(QPointF point) const {
    constexpr double kReach = 10;
    for (std::size_t i = shapes_.places.size(); i-- > 0;) {
        if ((onScreen(shapes_.places[i].at) - point).manhattanLength() < kReach) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

QPointF MapCanvas::onScreen(WorldPoint world) const {
    world.x += view_.turnsTo(world.x);
    return view_.screenOf(world);
}

void MapCanvas::paintEvent(QPaintEvent* /*event*/) {
    const MapColours colours(palette());
    QPainter painter(this);
    painter.fillRect(rect(), colours.ground());
    tiles_.paint(painter, view_, devicePixelRatioF());
    paintGraticule(painter, colours);
    painter.setRenderHint(QPainter::Antialiasing);
    paintPaths(painter, colours);
    paintPlaces(painter, colours);
    paintTrail(painter, colours);
    paintCursor(painter, colours);
    paintScaleBar(painter, colours);
    paintAttribution(painter, colours);
    if (hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(colours.chosen());
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

void MapCanvas::paintGraticule(QPainter& painter, const MapColours& colours) const {
    const Graticule graticule = graticuleOf(view_);
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.8);
    painter.setFont(small);
    const auto line = [&](QPointF from, QPointF to) {
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(colours.graticule());
        painter.drawLine(from, to);
    };
    for (const double longitude : graticule.meridians) {
        const double x = view_.screenOf(WorldPoint{longitude / 360 + 0.5, 0.5}).x();
        line({x, 0}, {x, height() + 0.0});
        drawText(painter, colours, {x + 3, painter.fontMetrics().ascent() + 2.0},
                 meridianText(longitude, graticule.step), colours.faintText());
    }
    for (const double latitude : graticule.parallels) {
        const double y = view_.screenOf(GeoPoint{latitude, 0}).y();
        line({0, y}, {width() + 0.0, y});
        if (y > 2 * painter.fontMetrics().height()) {  // below the texts of the meridians
            drawText(painter, colours, {3, y - 3}, parallelText(latitude, graticule.step),
                     colours.faintText());
        }
    }
    painter.setFont(font());
}

void MapCanvas::paintPaths(QPainter& painter, const MapColours& colours) const {
    painter.setPen(QPen(colours.faintText(), 1.5, Qt::DashLine));
    for (const Path& route : shapes_.routes) {
        paintPath(painter, route);
    }
    for (std::size_t i = 0; i < shapes_.tracks.size(); ++i) {
        painter.setPen(QPen(colours.track(i), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        paintPath(painter, shapes_.tracks[i]);
    }
    if (track_ >= 0 && static_cast<std::size_t>(track_) < shapes_.tracks.size()) {
        paintChosen(painter, colours, shapes_.tracks[static_cast<std::size_t>(track_)]);
    }
    if (route_ >= 0 && static_cast<std::size_t>(route_) < shapes_.routes.size()) {
        paintChosen(painter, colours, shapes_.routes[static_cast<std::size_t>(route_)]);
    }
}

void MapCanvas::paintPath(QPainter& painter, const Path& path) const {
    const double turns = view_.turnsTo(path.area.centre().x);
    for (const std::vector<WorldPoint>& piece : path.pieces) {
        painter.drawPolyline(polylineOf(piece, view_, turns));
    }
}

// Not by its colour alone: it is wider, on a halo, and its ends are marked.
void MapCanvas::paintChosen(QPainter& painter, const MapColours& colours, const Path& path) const {
    if (path.pieces.empty()) {
        return;
    }
    painter.setPen(QPen(colours.halo(), 8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    paintPath(painter, path);
    painter.setPen(QPen(colours.chosen(), 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    paintPath(painter, path);
    const double turns = view_.turnsTo(path.area.centre().x);
    painter.setPen(QPen(colours.text(), 2));
    const std::array ends = {std::pair(path.pieces.front().front(), colours.ground()),
                             std::pair(path.pieces.back().back(), colours.text())};
    for (const auto& [end, fill] : ends) {
        painter.setBrush(fill);
        painter.drawEllipse(view_.screenOf(WorldPoint{end.x + turns, end.y}), 5, 5);
    }
    painter.setBrush(Qt::NoBrush);
}

// Names that would lie on each other are left out, but for the chosen one's.
void MapCanvas::paintPlaces(QPainter& painter, const MapColours& colours) const {
    std::vector<QRectF> taken;
    const auto paint = [&](const Place& place, bool chosen) {
        const QPointF at = onScreen(place.at);
        painter.setPen(QPen(colours.halo(), 1.5));
        painter.setBrush(chosen ? colours.chosen() : colours.text());
        const double radius = chosen ? kPlaceRadius * 1.6 : kPlaceRadius;
        painter.drawEllipse(at, radius, radius);
        const double length = painter.fontMetrics().horizontalAdvance(place.name);
        const bool isRight = at.x() + kMargin + length < width();
        const QPointF baseline = at + QPointF(isRight ? kMargin : -kMargin - length, 4);
        const QRectF box =
            painter.fontMetrics().boundingRect(place.name).translated(baseline.toPoint());
        for (const QRectF& each : taken) {
            if (!chosen && each.intersects(box)) {
                return;
            }
        }
        taken.push_back(box);
        drawText(painter, colours, baseline, place.name, colours.text());
    };
    const auto isChosen = [this](std::size_t i) { return static_cast<int>(i) == place_; };
    for (std::size_t i = 0; i < shapes_.places.size(); ++i) {
        if (isChosen(i)) {
            paint(shapes_.places[i], true);
        }
    }
    for (std::size_t i = 0; i < shapes_.places.size(); ++i) {
        if (!isChosen(i)) {
            paint(shapes_.places[i], false);
        }
    }
    for (const Place& place : shapes_.routePoints) {
        paint(place, false);
    }
    painter.setBrush(Qt::NoBrush);
}

void MapCanvas::paintTrail(QPainter& painter, const MapColours& colours) const {
    if (trail_.empty()) {
        return;
    }
    QPolygonF line;
    for (const GeoPoint& point : trail_) {
        line.append(view_.screenOf(point));
    }
    painter.setPen(QPen(colours.chosen(), 2, Qt::DotLine));
    painter.drawPolyline(line);
    painter.setPen(QPen(colours.ground(), 2));
    painter.setBrush(colours.chosen());
    painter.drawEllipse(line.back(), 8, 8);
    painter.setBrush(Qt::NoBrush);
}

void MapCanvas::paintCursor(QPainter& painter, const MapColours& colours) const {
    if (!cursor_) {
        return;
    }
    const QPointF at = view_.screenOf(*cursor_);
    painter.setPen(QPen(colours.halo(), 5));
    painter.drawEllipse(at, 8, 8);
    painter.setPen(QPen(colours.text(), 2));
    painter.drawEllipse(at, 8, 8);
    painter.drawPoint(at);
}

void MapCanvas::paintScaleBar(QPainter& painter, const MapColours& colours) const {
    constexpr double kTick = 6;
    const ScaleBar bar = scaleBarOf(view_, units_);
    const QPointF left(kMargin, height() - kMargin);
    const QPointF right = left + QPointF(bar.pixels, 0);
    const QPolygonF line{left - QPointF(0, kTick), left, right, right - QPointF(0, kTick)};
    painter.setPen(QPen(colours.halo(), 4));
    painter.drawPolyline(line);
    painter.setPen(QPen(colours.text(), 1.5));
    painter.drawPolyline(line);
    drawText(painter, colours, left + QPointF(4, -5), bar.text, colours.text());
}

void MapCanvas::paintAttribution(QPainter& painter, const MapColours& colours) const {
    const QString& text = tiles_.source().attribution;
    if (!text.isEmpty()) {
        const int length = painter.fontMetrics().horizontalAdvance(text);
        drawText(painter, colours, {width() - length - kMargin, height() - kMargin}, text,
                 colours.text());
    }
}

}  // namespace marlune::desktop
