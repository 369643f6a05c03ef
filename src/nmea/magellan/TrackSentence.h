// $PMGNTRK,4807.038,N,01131.000,E,00152,M,123519.00,A,TRACK NAME,150325*hh
// position; altitude and its unit ("M", "F"); time of day; status; optional: track name, date
// ddmmyy.
//
// Sentences are wire text (nmea/Sentence.h).
#pragma once

#include <string>
#include <string_view>

#include "garmin/records/Trace.h"
#include "nmea/Sentence.h"

namespace marlune {

// Fills the track point; without a date field it is dated defaultDate (whole days since
// 30/12/1899), without a name it keeps its name. Years are 20yy. Returns the checksum computed over
// the sentence, for the caller to compare. A sentence of fewer than eight fields fills nothing; a
// date that does not exist or a number that does not fit ends the reading there. Both return an
// empty checksum, which matches none.
std::string GetAttributes_MGN(Trace& point, std::string_view sentence, double defaultDate);

// Whether a track point's sentence has the field of the date.
bool isDated(const Sentence& trackPoint);

// The point's sentence, ready to be sent: altitude in whole metres with at least five digits, track
// name in capitals, no date. Raises overflow for impossible coordinates.
std::string CoderMgn(const Trace& point);

}  // namespace marlune
