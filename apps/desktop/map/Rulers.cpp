#include "desktop/map/Rulers.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>
#include <algorithm>
#include <array>
#include <cmath>

namespace marlune::desktop {
namespace {

constexpr double kLinePixels = 110;  // at least so far apart

// A round step that is no smaller: of whole parts of a circle where degrees are whole.
double stepFrom(double degrees) {
    constexpr std::array kWhole = {1.0, 2.0, 5.0, 10.0, 15.0, 30.0, 45.0, 90.0};
    if (degrees > kWhole.front() / 2) {
        const auto* at = std::find_if(kWhole.begin(), kWhole.end(),
                                      [=](double each) { return each >= degrees; });
        return at == kWhole.end() ? kWhole.back() : *at;
    }
    return roundStep(degrees);
}

std::vector<double> multiples(double step, double from, double to) {
    std::vector<double> values;
    for (double number = std::ceil(from / step); number * step <= to; ++number) {
        values.push_back(number * step);
    }
    return values;
}

QString degreesText(double degrees, double step, const QString& side) {
    const int digits = std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
    return QStringLiteral("%1° %2").arg(QLocale().toString(std::abs(degrees), 'f', digits), side);
}

QString sideOf(const char* name) {
    return QCoreApplication::translate("Rulers", name);
}

// How many metres a unit of the scale bar has at that length.
double barUnit(double metres, qt::Units units) {
    constexpr double kNauticalMile = 1852;
    constexpr double kMile = 1609.344;
    constexpr double kYard = 0.9144;
    switch (units) {
        case qt::Units::nautical:
            return kNauticalMile;
        case qt::Units::imperial:
            return metres < kMile ? kYard : kMile;
        case qt::Units::metric:
            break;
    }
    return 1;
}

}  // namespace

double roundStep(double least) {
    const double power = std::pow(10, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least) {
            return factor * power;
        }
    }
    return 10 * power;
}

Graticule graticuleOf(const Viewport& view) {
    Graticule graticule;
    graticule.step = stepFrom(360 * kLinePixels / view.worldPixels());
    const WorldArea area = view.area();
    graticule.meridians = multiples(graticule.step, area.left * 360 - 180, area.right * 360 - 180);
    graticule.parallels =
        multiples(graticule.step, positionOf({0, std::min(area.bottom, 1.0)}).latitude,
                  positionOf({0, std::max(area.top, 0.0)}).latitude);
    return graticule;
}

QString parallelText(double latitude, double step) {
    return degreesText(latitude, step,
                       latitude < 0 ? sideOf(QT_TRANSLATE_NOOP("Rulers", "S"))
                                    : sideOf(QT_TRANSLATE_NOOP("Rulers", "N")));
}

QString meridianText(double longitude, double step) {
    const double turn = longitude - 360 * std::floor((longitude + 180) / 360);
    return degreesText(turn, step,
                       turn < 0 ? sideOf(QT_TRANSLATE_NOOP("Rulers", "W"))
                                : sideOf(QT_TRANSLATE_NOOP("Rulers", "E")));
}

ScaleBar scaleBarOf(const Viewport& view, qt::Units units, double pixels) {
    const double longest = pixels * view.metresPerPixel();
    const double unit = barUnit(longest, units);
    const double power = std::pow(10, std::floor(std::log10(longest / unit)));
    double metres = power * unit;
    for (const double factor : {2.0, 5.0}) {
        if (factor * power * unit <= longest) {
            metres = factor * power * unit;
        }
    }
    // Round lengths need no tenths.
    QString text = qt::lengthText(metres, units);
    text.replace(QLocale().decimalPoint() + QStringLiteral("0 "), QStringLiteral(" "));
    return {metres, metres / view.metresPerPixel(), text};
}

}  // namespace marlune::desktop
