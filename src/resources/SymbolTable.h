// The symbols of Garmin units: their numbers, and the names that GPX files of the field give them
// in <sym>. 7680 to 8191 are "Custom 0" to "Custom 511"; numbers that are not here have no name.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "marlune/RecordFiles.h"  // symbolName() and symbolNamed()

namespace marlune {

struct SymbolRow {
    std::int16_t number;
    std::string_view name;
};

// The dot that a waypoint has when nothing else is known.
constexpr std::int16_t kDefaultSymbol = 18;

// All rows but those of the custom symbols, by ascending number.
std::span<const SymbolRow> symbolRows();

}  // namespace marlune
