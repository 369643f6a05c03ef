#include "desktop/map/MapPanel.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

#include "desktop/Icons.h"

namespace marlune::desktop {
namespace {

template <class Slot>
void addButton(QBoxLayout& row, MapCanvas& map, const char* icon, const QString& what, Slot slot) {
    auto* button = new QToolButton;
    button->setIcon(iconNamed(icon, button->palette()));
    button->setToolTip(what);
    button->setAccessibleName(what);
    button->setAutoRaise(true);
    QObject::connect(button, &QToolButton::clicked, &map, slot);
    row.addWidget(button);
}

}  // namespace

MapPanel::MapPanel(TileLayer& tiles, QWidget* parent)
    : QWidget(parent), map_(new MapCanvas(tiles)), position_(new QLabel) {
    auto* row = new QHBoxLayout;
    addButton(*row, *map_, "zoom-in", tr("Zoom in"), &MapCanvas::zoomIn);
    addButton(*row, *map_, "zoom-out", tr("Zoom out"), &MapCanvas::zoomOut);
    addButton(*row, *map_, "zoom-fit", tr("Show everything"), &MapCanvas::fit);
    row->addStretch();
    row->addWidget(position_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(row);
    column->addWidget(map_, 1);
    connect(map_, &MapCanvas::pointed, this, [this](const std::optional<GeoPoint>& at) {
        position_->setText(at ? qt::positionText(at->latitude, at->longitude) : QString());
    });
}

}  // namespace marlune::desktop
