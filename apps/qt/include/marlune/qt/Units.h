// The units that people read lengths, heights and speeds in.
#pragma once

#include <QtCore/QString>

#include "marlune/qt/Export.h"

namespace marlune::qt {

enum class Units { metric, nautical, imperial };

// Texts in the user's locale, with their unit: "850 m", "12.4 km", "6.7 NM", "41.2 mi". metres may
// be any number.
MARLUNE_QT_EXPORT QString lengthText(double metres, Units units);
// Of an altitude, depth or climb: "1208 m", "3963 ft".
MARLUNE_QT_EXPORT QString heightText(double metres, Units units);
// "5.4 km/h", "2.9 kn", "3.4 mph".
MARLUNE_QT_EXPORT QString speedText(double metresPerSecond, Units units);
// "3:07:15"; whole seconds.
MARLUNE_QT_EXPORT QString durationText(double seconds);
// "46.40271° N 6.11823° E".
MARLUNE_QT_EXPORT QString positionText(double latitude, double longitude);
// A time of the records (seconds since 1970-01-01 00:00:00 UTC) as the user's own date and time.
MARLUNE_QT_EXPORT QString timeText(double time);

}  // namespace marlune::qt
