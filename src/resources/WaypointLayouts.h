// Where the fields of Garmin waypoint records lie: numbered rows of the string table, one per data
// type, under the digits of its name.
//
// A row is split at ";": the name; ident, latitude, longitude, comment, altitude, symbol and
// display, each as offset and length with one blank between them; the record's total length. Offset
// -1: the type lacks the field. Length 0: a text that ends at a zero byte.
//
// The rows follow Garmin's device interface document, with differences that are kept: D150 reads
// the last 40 bytes of its comment area, D154 is one byte shorter than its symbol needs, D107 has
// no display, and the comment offsets of D108 to D110 stand for "behind the ident".
#pragma once

#include <array>
#include <string_view>

namespace marlune {

struct WaypointLayoutRow {
    int number;
    std::string_view text;
};

// clang-format off
inline constexpr std::array kWaypointLayoutRows = std::to_array<WaypointLayoutRow>({
    //     name ident lat  lon  comment altitude symbol display total
    {100, "D100;0 6;6 4;10 4;18 40;-1 -1;-1 -1;-1 -1;58"},
    {101, "D101;0 6;6 4;10 4;18 40;-1 -1;62 1;-1 -1;63"},
    {102, "D102;0 6;6 4;10 4;18 40;-1 -1;62 2;-1 -1;64"},
    {103, "D103;0 6;6 4;10 4;18 40;-1 -1;58 1;59 1;60"},
    {104, "D104;0 6;6 4;10 4;18 40;-1 -1;62 2;64 1;65"},
    {105, "D105;10 0;0 4;4 4;-1 -1;-1 1;8 2;-1 -1;30"},
    {106, "D106;24 0;14 4;18 4;-1 -1;-1 -1;22 2;-1 -1;70"},
    {107, "D107;0 6;6 4;10 4;18 40;-1 -1;58 1;-1 -1;65"},
    {108, "D108;48 0;24 4;28 4;54 0;32 4;4 2;2 1;125"},
    {109, "D109;52 0;24 4;28 4;58 0;32 4;4 2;2 1;154"},
    {110, "D110;62 0;24 4;28 4;68 0;32 4;4 2;2 1;164"},
    {150, "D150;0 6;9 4;13 4;85 40;17 2;-1 -1;-1 -1;125"},
    {151, "D151;0 6;6 4;10 4;18 40;118 2;-1 -1;-1 -1;124"},
    {152, "D152;0 6;6 4;10 4;18 40;118 2;-1 -1;-1 -1;124"},
    {154, "D154;0 6;6 4;10 4;18 40;118 2;124 2;-1 -1;125"},
    {155, "D155;0 6;6 4;10 4;18 40;118 2;124 2;126 1;127"},
});
// clang-format on

}  // namespace marlune
