// Numbers as texts and back, the same on every machine whatever its locale.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "base/RunTimeError.h"

namespace marlune {

// The shortest text that reads back to the same number: never an exponent, no trailing zeros, "0"
// for minus zero. decimalSeparator stands between the whole and the fractional digits. What is not
// a finite number has no such text and is written "0".
//
// A single keeps to its own precision (0.1F is "0.1"). Whole numbers go through std::to_string.
std::string numberText(double value, char decimalSeparator);
std::string numberText(float value, char decimalSeparator);

// The same, at the end of a text.
void appendNumber(std::string& text, double value, char decimalSeparator);
void appendNumber(std::string& text, float value, char decimalSeparator);

// numberText(roundHalfEven(value, decimals)) at the end of a text, faster. A single that is rounded
// to a whole number may be given as a double: whole numbers have one text.
void appendRounded(std::string& text, double value, int decimals, char decimalSeparator);

// The value to so many decimals; halves, as they appear after scaling, go to the even neighbour.
// decimals: 0 to 15. What is too large to have such decimals comes back as it is.
double roundHalfEven(double value, int decimals);

// A number at the start of a text.
struct LeadingNumber {
    double value = 0;
    std::size_t length = 0;  // characters taken, leading blanks included; 0 when there is no number
};

// Skips leading blanks, then takes a sign, digits with at most one ".", and an exponent when
// digits follow it; stops at the first character that cannot continue. What is beyond the range of
// a double reads as infinity or zero.
LeadingNumber leadingNumber(std::string_view text);

// The value of the leading number; 0 when there is none.
double readNumber(std::string_view text);

// A value as a single. Raises overflow when it is beyond the range of singles or not a number.
float toSingle(double value);

// The nearest whole number, halves to the even neighbour. Raises overflow when it does not fit.
template <class Whole>
Whole roundTo(double value) {
    const double rounded = roundHalfEven(value, 0);
    if (!(rounded >= static_cast<double>(std::numeric_limits<Whole>::min()) &&
          rounded <= static_cast<double>(std::numeric_limits<Whole>::max()))) {
        throw RunTimeError(RunTimeError::overflow);
    }
    static_assert(sizeof(Whole) <= 4, "the limits must be exact as doubles");
    return static_cast<Whole>(rounded);
}

}  // namespace marlune
