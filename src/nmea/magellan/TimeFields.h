// The time of day in a sentence: "hhmmss.ss".
#pragma once

#include <string_view>

namespace marlune {

// As a fraction of a day. Seconds are the last five characters, whatever stands there: "123456"
// without a fraction has 23456 of them, and that is meant. Raises overflow when a single cannot
// hold them.
double readTimeOfDay(std::string_view field);

}  // namespace marlune
