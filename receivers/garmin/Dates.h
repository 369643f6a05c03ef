// How a Garmin unit counts time.
#pragma once

namespace marlune::receivers::garmin {

// A unit's time begins with this day, counted from 30/12/1899.
inline constexpr double kEpochDay = 32873;  // 31/12/1989, a Sunday
inline constexpr double kSecondsADay = 86400;

}  // namespace marlune::receivers::garmin
