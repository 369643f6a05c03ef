// The records of MLR receivers: waypoints and track points as sentences, and track points as the
// binary records of a data block.
//
// $GPWPL,4807.038,N,01131.000,E,HOME   MY HOUSE*hh
// position; name in six characters, a blank, comment.
//
// Sentences are wire text (nmea/Sentence.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "garmin/records/Trace.h"
#include "garmin/records/Waypoint.h"

namespace marlune {

// Fills the waypoint; the name keeps its blanks, the symbol becomes 18, the altitude stays as it
// is. Returns what followed "*", unverified, empty when nothing did. A number that does not fit
// ends the reading there and returns nothing, as does a sentence cut off in front of its name.
std::optional<std::string> GetAttributes_MLR(Waypoint& waypoint, std::string_view sentence);

// The waypoint's sentence, ready to be sent; the name is cut or padded to six characters. Raises
// overflow for impossible coordinates.
std::string Coder_MLR(const Waypoint& waypoint);

// A track point that was sent as a waypoint: its name is "TRC012" or "TR0123", and a comment that
// begins with "C" marks a new segment. The sentence has no time: points are dated today (whole days
// since 30/12/1899) plus their number in ten-thousandths of a day, which keeps their order.
std::optional<std::string> GetAttributes_MLR(Trace& point, std::string_view sentence, double today);

// The shortest track point record of a data block.
inline constexpr std::size_t kMlrTrackRecordLength = 16;

// Fills the point from such a record and returns the point's number. A record without a time is
// dated as above. The new-segment flag is the caller's, who knows the point before. Raises the
// index error for a record that is too short.
std::uint16_t GetAttributes_MLR_SP(Trace& point, std::string_view record, double today);

// Whether such a record carries a time of its own.
bool isDated_MLR_SP(std::string_view record);

}  // namespace marlune
