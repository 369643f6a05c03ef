// Which server map tiles come from.
#pragma once

#include <QtWidgets/QDialog>

#include "desktop/map/TileLayer.h"

class QLineEdit;

namespace marlune::desktop {

class TileDialog : public QDialog {
    Q_OBJECT

public:
    explicit TileDialog(const TileSource& source, QWidget* parent = nullptr);

    // Empty for no tiles.
    [[nodiscard]] TileSource source() const;

private:
    QLineEdit* address_;
    QLineEdit* attribution_;
};

}  // namespace marlune::desktop
