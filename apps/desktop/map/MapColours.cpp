#include "desktop/map/MapColours.h"

namespace marlune::desktop {

QColor MapColours::faint(float opacity) const {
    QColor colour = text();
    colour.setAlphaF(opacity);
    return colour;
}

QColor MapColours::halo() const {
    QColor colour = ground();
    colour.setAlphaF(0.8F);
    return colour;
}

QColor MapColours::track(std::size_t number) const {
    constexpr int kTurn = 137;  // degrees of the golden angle
    constexpr int kFullTurn = 360;
    const int first = chosen().hslHue() < 0 ? 0 : chosen().hslHue();
    const int hue = (first + static_cast<int>(number % kFullTurn) * kTurn) % kFullTurn;
    return QColor::fromHslF(static_cast<float>(hue) / kFullTurn, 0.75F, isDark() ? 0.65F : 0.4F);
}

}  // namespace marlune::desktop
