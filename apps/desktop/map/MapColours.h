// The colours of the map, taken from the palette of the desktop, light or dark.
#pragma once

#include <QtGui/QColor>
#include <QtGui/QPalette>
#include <cstddef>
#include <utility>

namespace marlune::desktop {

class MapColours {
public:
    explicit MapColours(QPalette palette) : palette_(std::move(palette)) {}

    [[nodiscard]] QColor ground() const { return palette_.color(QPalette::Base); }
    [[nodiscard]] QColor text() const { return palette_.color(QPalette::Text); }
    [[nodiscard]] QColor chosen() const { return palette_.color(QPalette::Highlight); }
    [[nodiscard]] QColor graticule() const { return faint(0.18F); }
    [[nodiscard]] QColor faintText() const { return faint(0.65F); }
    // Behind texts that stand on something.
    [[nodiscard]] QColor halo() const;
    // Neighbouring numbers differ most.
    [[nodiscard]] QColor track(std::size_t number) const;
    [[nodiscard]] bool isDark() const { return ground().lightnessF() < text().lightnessF(); }

private:
    [[nodiscard]] QColor faint(float opacity) const;

    QPalette palette_;
};

}  // namespace marlune::desktop
