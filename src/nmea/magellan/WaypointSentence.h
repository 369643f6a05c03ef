// $PMGNWPL,4807.038,N,01131.000,E,0000152,M,HOME,MY HOUSE,a*hh
// position; altitude and its unit ("M", "F"); name; comment; icon.
//
// Sentences are wire text (nmea/Sentence.h).
#pragma once

#include <string>
#include <string_view>

#include "garmin/records/Waypoint.h"

namespace marlune {

// Fills the waypoint; the symbol becomes 18 and the icon is not read. Returns the checksum computed
// over the sentence, for the caller to compare. A number that does not fit its field ends the
// reading there and returns an empty checksum, which matches none.
std::string GetAttributes_MGN(Waypoint& waypoint, std::string_view sentence);

// The waypoint's sentence, ready to be sent. The altitude loses its fraction, the icon is always
// "a", name and comment go as they are, commas included. Raises overflow for impossible
// coordinates.
std::string Coder_MGN(const Waypoint& waypoint);

}  // namespace marlune
