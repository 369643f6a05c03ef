// Sentences as receivers write them: "$", fields between ",", "*", the exclusive or of what stands
// between "$" and "*" as two hexadecimal capitals, carriage return, line feed. The texts of
// coordinates, times and names in their fields.
//
// Dates are days since 30/12/1899, UTC. Wire text is Windows-1252, one character a byte.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace marlune::receivers::nmea {

inline constexpr double kSecondsADay = 86400;

// The exclusive or of all characters.
std::uint8_t checksum(std::string_view text);

// "GPGLL,..." as a whole sentence.
std::string sentence(std::string_view body);

// What faults call a sentence: its name, "GPGLL" of "$GPGLL,..."; for the makers' commands and
// answers the word behind it, "END" of "$PMGNCMD,END*3D" and "IDGPS" of "$PMLR,IDGPS,...".
std::string_view labelOf(std::string_view sentence);

// "4807.038,N,01131.000,E" with that many decimals of a minute. Latitudes beyond a pole are the
// pole's.
std::string coordinates(double latitude, double longitude, int decimals);

// "4807.038" and "N", "01131.000" and "E"; nothing when that is no place on earth.
std::optional<double> readLatitude(std::string_view field, std::string_view hemisphere);
std::optional<double> readLongitude(std::string_view field, std::string_view hemisphere);

// A plain decimal number, and a whole one; nothing for anything else.
std::optional<double> readNumber(std::string_view field);
std::optional<int> readWhole(std::string_view field);

// Metres of an altitude in metres ("M") or feet ("F"); nothing when the field is empty.
std::optional<double> readAltitude(std::string_view field, std::string_view unit);

// "123519.25" and "230394" of a date.
std::string timeText(double date);
std::string dayText(double date);
// The time as part of a day, the day as a date in this century; nothing when there is none such.
std::optional<double> readTime(std::string_view hhmmss);
std::optional<double> readDay(std::string_view ddmmyy);

// A text as a field can hold it: what would end the field or the sentence becomes a blank.
std::string wireText(std::string_view utf8);
// A field's text as it is held: UTF-8, no blanks around it, nothing in it that text lines use.
std::string heldText(std::string_view wire);

// The number with leading zeros; more digits when it needs them.
std::string padded(std::int64_t number, int digits);

}  // namespace marlune::receivers::nmea
