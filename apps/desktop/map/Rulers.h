// What a map is read with: the graticule and the scale bar, as numbers.
#pragma once

#include <QtCore/QString>
#include <vector>

#include "desktop/map/Viewport.h"
#include "marlune/qt/Units.h"

namespace marlune::desktop {

// Lines of whole steps in degrees, as many as leave room for their texts.
struct Graticule {
    double step = 0;
    std::vector<double> meridians;  // longitudes; beyond 180 on the next turn around the earth
    std::vector<double> parallels;  // latitudes
};
// 1, 2 or 5 times a power of ten: the first that is no smaller.
double roundStep(double least);
Graticule graticuleOf(const Viewport& view);
// "46.25° N", with as many digits as the step needs.
QString parallelText(double latitude, double step);
QString meridianText(double longitude, double step);

// The longest round length that is no wider than `pixels`.
struct ScaleBar {
    double metres = 0;
    double pixels = 0;
    QString text;
};
ScaleBar scaleBarOf(const Viewport& view, qt::Units units, double pixels = 140);

}  // namespace marlune::desktop
