// What Garmin units that do not announce their protocols speak: numbered rows of the string table.
//
// The first row of a product stands under number 10000 + product id x 10, further rows follow it
// one by one. Row 19990 (product id 999) is the generic entry for units without a row.
//
// A row is split at ";": lowest and highest software version in hundredths (both inclusive), then
// thirteen tags, an empty one where the unit lacks that protocol: link, command, waypoint protocol,
// waypoint type, route protocol, route header type, route waypoint type, track protocol, track
// point type, proximity protocol, proximity type, almanac protocol, almanac type.
//
// The rows are those of the table of units in Garmin's device interface document.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace marlune {

struct ProductRow {
    int number;
    std::string_view text;
};

constexpr int kGenericProductId = 999;

// All rows, by ascending number.
std::span<const ProductRow> productRows();

// The row of that number, if there is one.
std::optional<std::string_view> productRow(int number);

}  // namespace marlune
