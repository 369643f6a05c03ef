// The sentences of MLR receivers.
//
// $PMLR,24,02,0301,039B
// A command or answer: it ends with a check field, four hexadecimal capitals, the sum of all
// characters in front of it. It has no "*".
//
// $GPWPL,4807.038,N,01131.000,E,HOME   MY HOUSE*hh
// A waypoint: name in six characters, a blank, comment.
//
// $GPWPL,4807.038,N,01131.000,E,TRC012 C*hh
// A track point: "TRC" and its number, from 1000 on "TR" and its number; the comment "C" where a
// segment begins.
//
// $GPRTE,... see RouteSentences.h
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "receivers/DeviceData.h"
#include "receivers/nmea/HeardSentence.h"

namespace marlune::receivers::mlr {

inline constexpr std::size_t kNameWidth = 6;
// There are names for as many track points.
inline constexpr int kMostNumbered = 9999;

// "$PMLR,06,00," with its check field and line ending.
std::string command(std::string_view body);
// Whether a heard command ends with the right check field.
bool isChecked(std::string_view text);

// Whole sentences.
std::string placeSentence(const Place& place);
std::string pointSentence(const TrackPoint& point, int number);

// Nothing when the sentence is malformed.
std::optional<Place> readPlace(const nmea::HeardSentence& heard);

}  // namespace marlune::receivers::mlr
