#include "marlune/qt/Units.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <cmath>

namespace marlune::qt {
namespace {

constexpr double kMetresOfKilometre = 1000;
constexpr double kMetresOfNauticalMile = 1852;
constexpr double kMetresOfMile = 1609.344;
constexpr double kMetresOfFoot = 0.3048;
constexpr double kSecondsOfHour = 3600;

QString numberText(double number, int decimals) {
    if (!std::isfinite(number)) {
        return "–";
    }
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    const double step = std::pow(10.0, -decimals);
    const bool isZero = std::abs(number) < step / 2;
    return locale.toString(isZero ? 0.0 : number, 'f', decimals);  // never "-0"
}

// A size with the unit of its kind, in the small unit while that reads better.
struct Scale {
    double big;
    const char* bigName;
    double small;
    const char* smallName;
    double smallUpTo;  // in small units
};

Scale lengthScale(Units units) {
    switch (units) {
        case Units::nautical:
            return {kMetresOfNauticalMile, "NM", 1, "m", 185};
        case Units::imperial:
            return {kMetresOfMile, "mi", kMetresOfFoot, "ft", 528};
        case Units::metric:
            break;
    }
    return {kMetresOfKilometre, "km", 1, "m", 1000};
}

}  // namespace

QString lengthText(double metres, Units units) {
    const Scale scale = lengthScale(units);
    const double small = metres / scale.small;
    return std::abs(std::round(small)) < scale.smallUpTo
               ? numberText(small, 0) + ' ' + scale.smallName
               : numberText(metres / scale.big, 1) + ' ' + scale.bigName;
}

QString heightText(double metres, Units units) {
    return units == Units::imperial ? numberText(metres / kMetresOfFoot, 0) + " ft"
                                    : numberText(metres, 0) + " m";
}

QString speedText(double metresPerSecond, Units units) {
    const double metresPerHour = metresPerSecond * kSecondsOfHour;
    switch (units) {
        case Units::nautical:
            return numberText(metresPerHour / kMetresOfNauticalMile, 1) + " kn";
        case Units::imperial:
            return numberText(metresPerHour / kMetresOfMile, 1) + " mph";
        case Units::metric:
            break;
    }
    return numberText(metresPerHour / kMetresOfKilometre, 1) + " km/h";
}

QString durationText(double seconds) {
    if (!(std::abs(seconds) < 1e12)) {
        return "–";
    }
    const long long whole = std::llround(std::abs(seconds));
    const QString sign = seconds < 0 && whole > 0 ? "-" : "";
    return sign + QString("%1:%2:%3")
                      .arg(whole / 3600)
                      .arg(whole / 60 % 60, 2, 10, QChar('0'))
                      .arg(whole % 60, 2, 10, QChar('0'));
}

QString positionText(double latitude, double longitude) {
    const auto angle = [](double degrees, const char* positive, const char* negative) {
        return numberText(std::abs(degrees), 5) + "° " + (degrees < 0 ? negative : positive);
    };
    return angle(latitude, "N", "S") + ' ' + angle(longitude, "E", "W");
}

QString timeText(double time) {
    if (!(std::abs(time) < 1e11)) {
        return "–";
    }
    const QLocale locale;
    QString format = locale.timeFormat(QLocale::ShortFormat);
    if (!format.contains("ss")) {
        format.replace("mm", "mm:ss");  // points lie seconds apart
    }
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(std::llround(time * 1000));
    return locale.toString(local.date(), QLocale::ShortFormat) + ' ' +
           locale.toString(local.time(), format);
}

}  // namespace marlune::qt
