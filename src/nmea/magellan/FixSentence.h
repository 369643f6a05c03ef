// $GPGGA,123519.00,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*hh
// time of day; position; fix quality, 0 for none; satellites; dilution; altitude and its unit.
#pragma once

#include <string_view>

#include "garmin/records/PvtData.h"

namespace marlune {

// Fills the fix and its point, dated today (whole days since 30/12/1899; the sentence has no date);
// first becomes the point's new-segment flag. The point is made only from a valid fix with a
// position; a number that does not fit leaves it unmade.
void GetAttributes_MGN(PvtData& fix, std::string_view sentence, double today, bool first);

}  // namespace marlune
