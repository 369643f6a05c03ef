// A fix as the sentences that navigation programs and position daemons read: what a receiver that
// speaks no NMEA would have said.
#pragma once

#include <string>

#include "marlune/Records.h"

namespace marlune {

// Each with its checksum, CR and LF. What the fix does not know is an empty field; a fix without
// quality is marked as none (quality 0 and status V). Positions have five decimals of minutes (2
// cm), altitudes are metres above the sea.
//
//   $GPGGA,123519.00,4807.03800,N,01131.00000,E,1,,,545.4,M,,M,,*hh
std::string ggaSentence(const FixRecord& fix);
//   $GPRMC,123519.00,A,4807.03800,N,01131.00000,E,22.4,084.4,230394,,,A*hh
// Speed in knots, course in degrees, from the speeds east and north.
std::string rmcSentence(const FixRecord& fix);

}  // namespace marlune
