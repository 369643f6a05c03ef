#include "desktop/profile/ProfileView.h"

#include <QtCharts/QAreaSeries>
#include <QtCharts/QChart>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QGraphicsLayout>
#include <algorithm>
#include <cmath>

#include "desktop/map/Rulers.h"

namespace marlune::desktop {
namespace {

// What the axes count in.
struct AxisUnits {
    double metresAlong;
    double metresUp;
    const char* along;
    const char* up;
};

AxisUnits axisUnits(qt::Units units) {
    switch (units) {
        case qt::Units::nautical:
            return {1852, 1, "NM", "m"};
        case qt::Units::imperial:
            return {1609.344, 0.3048, "mi", "ft"};
        case qt::Units::metric:
            break;
    }
    return {1000, 1, "km", "m"};
}

}  // namespace

ProfileView::ProfileView(QWidget* parent)
    : QChartView(parent),
      line_(new QLineSeries(this)),
      floor_(new QLineSeries(this)),
      area_(new QAreaSeries(line_, floor_)),
      distance_(new QValueAxis),
      altitude_(new QValueAxis) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setRenderHint(QPainter::Antialiasing);
    setFrameShape(QFrame::NoFrame);
    setMinimumHeight(110);
    setAccessibleName(tr("Altitude profile"));
    chart()->legend()->hide();
    chart()->setMargins({});
    chart()->layout()->setContentsMargins(0, 0, 0, 0);
    chart()->setBackgroundRoundness(0);
    chart()->addSeries(area_);
    chart()->addAxis(distance_, Qt::AlignBottom);
    chart()->addAxis(altitude_, Qt::AlignLeft);
    area_->attachAxis(distance_);
    area_->attachAxis(altitude_);
    altitude_->setTickCount(4);
    takePalette();
    rebuild();
}

void ProfileView::takePalette() {
    const QPalette colours = palette();
    QColor grid = colours.color(QPalette::Text);
    grid.setAlphaF(0.18F);
    QColor fill = colours.color(QPalette::Highlight);
    area_->setPen(QPen(fill, 2));
    fill.setAlphaF(0.3F);
    area_->setBrush(fill);
    setBackgroundBrush(colours.brush(QPalette::Base));
    chart()->setBackgroundBrush(colours.brush(QPalette::Base));
    for (QValueAxis* axis : {distance_, altitude_}) {
        axis->setLabelsColor(colours.color(QPalette::Text));
        axis->setTitleBrush(colours.brush(QPalette::Text));
        axis->setGridLineColor(grid);
        axis->setLinePenColor(grid);
        axis->setLabelsFont(font());
    }
}

void ProfileView::changeEvent(QEvent* event) {
    QChartView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        takePalette();
    }
}

void ProfileView::setTrack(const TrackRecord* track) {
    hasTrack_ = track != nullptr;
    profile_ = hasTrack_ ? Profile(*track) : Profile();
    setCursorMark(-1);
    rebuild();
}

void ProfileView::setUnits(qt::Units units) {
    units_ = units;
    rebuild();
}

void ProfileView::rebuild() {
    const AxisUnits units = axisUnits(units_);
    line_->clear();
    floor_->clear();
    area_->setVisible(!profile_.isEmpty());
    for (QValueAxis* axis : {distance_, altitude_}) {
        axis->setVisible(!profile_.isEmpty());
    }
    if (profile_.isEmpty()) {
        setAccessibleDescription(hasTrack_ ? tr("The track has no altitudes")
                                           : tr("Choose a track to see its profile"));
        viewport()->update();
        return;
    }
    QList<QPointF> points;
    for (const QPointF& each : profile_.curve(std::max(width(), 200))) {
        points.append({each.x() / units.metresAlong, each.y() / units.metresUp});
    }
    const double length = std::max(profile_.length(), 1.0) / units.metresAlong;
    distance_->setRange(0, length);
    distance_->setTitleText(tr("Distance (%1)").arg(QLatin1String(units.along)));
    constexpr double kTicks = 6;
    const double step = roundStep(length / kTicks);
    distance_->setTickType(QValueAxis::TicksDynamic);
    distance_->setTickAnchor(0);
    distance_->setTickInterval(step);
    distance_->setLabelFormat(QStringLiteral("%.%1f").arg(
        std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)))));
    altitude_->setRange(profile_.lowest() / units.metresUp,
                        std::max(profile_.highest(), profile_.lowest() + 10) / units.metresUp);
    altitude_->setTitleText(tr("Altitude (%1)").arg(QLatin1String(units.up)));
    altitude_->setLabelFormat(QStringLiteral("%.0f"));
    altitude_->applyNiceNumbers();
    line_->replace(points);
    floor_->replace(QList<QPointF>{{0, altitude_->min()}, {length, altitude_->min()}});
    setAccessibleDescription(tr("%1 long, from %2 to %3")
                                 .arg(qt::lengthText(profile_.length(), units_),
                                      qt::heightText(profile_.lowest(), units_),
                                      qt::heightText(profile_.highest(), units_)));
    viewport()->update();
}

void ProfileView::setCursorMark(int mark) {
    if (mark == cursor_) {
        return;
    }
    cursor_ = mark;
    viewport()->update();
    Q_EMIT cursorMoved(mark < 0 ? -1 : profile_.marks()[static_cast<std::size_t>(mark)].point);
}

void ProfileView::mouseMoveEvent(QMouseEvent* event) {
    if (!profile_.isEmpty()) {
        const QPointF at = chart()->mapFromScene(mapToScene(event->position().toPoint()));
        const double value = chart()->mapToValue(at, area_).x();
        setCursorMark(profile_.nearest(value * axisUnits(units_).metresAlong));
    }
}

void ProfileView::leaveEvent(QEvent* /*event*/) {
    setCursorMark(-1);
}

void ProfileView::keyPressEvent(QKeyEvent* event) {
    const int last = static_cast<int>(profile_.marks().size()) - 1;
    const int page = std::max(1, last / 20);
    int to = cursor_;
    switch (event->key()) {
        case Qt::Key_Left:
            to -= 1;
            break;
        case Qt::Key_Right:
            to += 1;
            break;
        case Qt::Key_PageUp:
            to -= page;
            break;
        case Qt::Key_PageDown:
            to += page;
            break;
        case Qt::Key_Home:
            to = 0;
            break;
        case Qt::Key_End:
            to = last;
            break;
        default:
            QChartView::keyPressEvent(event);
            return;
    }
    if (last >= 0) {
        setCursorMark(std::clamp(to, 0, last));
    }
}

void ProfileView::resizeEvent(QResizeEvent* event) {
    QChartView::resizeEvent(event);
    rebuild();
}

QString ProfileView::cursorText() const {
    const Profile::Mark& mark = profile_.marks()[static_cast<std::size_t>(cursor_)];
    return QStringLiteral("%1 · %2").arg(qt::lengthText(mark.distance, units_),
                                         qt::heightText(mark.altitude, units_));
}

void ProfileView::drawForeground(QPainter* painter, const QRectF& /*rect*/) {
    painter->setPen(palette().color(QPalette::Text));
    if (profile_.isEmpty()) {
        painter->drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap,
                          accessibleDescription());
        return;
    }
    if (cursor_ < 0) {
        return;
    }
    const AxisUnits units = axisUnits(units_);
    const Profile::Mark& mark = profile_.marks()[static_cast<std::size_t>(cursor_)];
    const QPointF at = chart()->mapToPosition(
        {mark.distance / units.metresAlong, mark.altitude / units.metresUp}, area_);
    const QRectF plot = chart()->plotArea();
    painter->drawLine(QPointF(at.x(), plot.top()), QPointF(at.x(), plot.bottom()));
    painter->setBrush(palette().color(QPalette::Base));
    painter->drawEllipse(at, 4, 4);
    const bool isLeft = at.x() < plot.center().x();
    painter->drawText(plot.adjusted(4, 2, -4, 0),
                      static_cast<int>(Qt::AlignTop | (isLeft ? Qt::AlignRight : Qt::AlignLeft)),
                      cursorText());
}

}  // namespace marlune::desktop
