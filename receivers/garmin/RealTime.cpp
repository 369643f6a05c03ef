#include "receivers/garmin/RealTime.h"

#include <chrono>
#include <cmath>
#include <numbers>

#include "receivers/garmin/Bytes.h"
#include "receivers/garmin/Dates.h"

namespace marlune::receivers::garmin {
namespace {

constexpr int kDaysAWeek = 7;
constexpr int kLeapSeconds = 18;  // between UTC and the satellites' time, since 2017
// The ellipsoid lies that much below mean sea level here.
constexpr float kGeoid = 48;
constexpr int kFix3d = 3;

double radians(double degrees) {
    return degrees / 180 * std::numbers::pi;
}

}  // namespace

// month, day, year (2), hour (2), minute, second
std::vector<std::uint8_t> dateRecord(double date) {
    using std::chrono::days;
    using std::chrono::seconds;
    const seconds since(std::llround(date * kSecondsADay));
    const auto day = std::chrono::floor<days>(since);
    constexpr std::chrono::sys_days kDayZero = std::chrono::year(1899) / std::chrono::December / 30;
    const std::chrono::year_month_day calendar(kDayZero + day);
    const std::chrono::hh_mm_ss clock(since - day);
    ByteWriter record;
    record.u8(static_cast<int>(static_cast<unsigned>(calendar.month())));
    record.u8(static_cast<int>(static_cast<unsigned>(calendar.day())));
    record.u16(static_cast<int>(calendar.year())).u16(static_cast<int>(clock.hours().count()));
    record.u8(static_cast<int>(clock.minutes().count()));
    record.u8(static_cast<int>(clock.seconds().count()));
    return record.take();
}

std::vector<std::uint8_t> positionRecord(const Motion& motion) {
    ByteWriter record;
    record.number(radians(motion.latitude)).number(radians(motion.longitude));
    return record.take();
}

// altitude above the ellipsoid, errors (total, horizontal, vertical), fix (2), time of week,
// latitude, longitude, velocity (east, north, up), ellipsoid above sea level, leap seconds (2),
// days to the week's beginning (4)
std::vector<std::uint8_t> pvtRecord(const Motion& motion, double date) {
    // A date in days is exact to the microsecond only; milliseconds are enough for a fix.
    const double seconds = std::round((date - kEpochDay) * kSecondsADay * 1000) / 1000;
    const double satelliteTime = seconds + kLeapSeconds;
    const double week = std::floor(satelliteTime / kSecondsADay / kDaysAWeek);
    ByteWriter record;
    record.number(static_cast<float>(motion.altitude) + kGeoid);
    record.number(5.7F).number(3.9F).number(4.2F).u16(kFix3d);
    record.number(satelliteTime - week * kDaysAWeek * kSecondsADay);
    record.number(radians(motion.latitude)).number(radians(motion.longitude));
    record.number(static_cast<float>(motion.east)).number(static_cast<float>(motion.north));
    record.number(0.0F).number(-kGeoid).u16(kLeapSeconds);
    record.number(static_cast<std::int32_t>(week * kDaysAWeek));
    return record.take();
}

}  // namespace marlune::receivers::garmin
