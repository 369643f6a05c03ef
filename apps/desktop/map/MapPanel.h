// The map with its buttons and the position under the mouse.
#pragma once

#include <QtWidgets/QWidget>

#include "desktop/map/MapCanvas.h"

class QLabel;

namespace marlune::desktop {

class MapPanel : public QWidget {
    Q_OBJECT

public:
    explicit MapPanel(TileLayer& tiles, QWidget* parent = nullptr);

    [[nodiscard]] MapCanvas& map() const { return *map_; }

private:
    MapCanvas* map_;
    QLabel* position_;
};

}  // namespace marlune::desktop
