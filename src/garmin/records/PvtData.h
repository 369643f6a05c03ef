// A real-time fix: the D800 record, and the track point that tells it to the host.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "garmin/records/Trace.h"
#include "host/DebugTrace.h"

namespace marlune {

class PvtData {
public:
    std::int16_t fix = 0;  // 0 to 5, named by fixNames
    float altitude = 0;    // metres above the sea
    float epe = 0;         // estimated errors in metres: total, horizontal, vertical
    float eph = 0;
    float epv = 0;
    double latitude = 0;  // degrees
    double longitude = 0;
    float east = 0;  // velocity in metres per second
    float north = 0;
    float up = 0;
    double time = 0;             // days since 30/12/1899, UTC
    std::optional<Trace> point;  // of the last record that had a fix
    std::array<std::string_view, 6> fixNames;

    // Slightly less than 180 / pi; hosts know the results of this factor.
    static constexpr double kDegreesPerRadian = 57.295779505601;

    PvtData() { Class_Initialize(); }

    // Fills the fields and makes the point, whose new-segment flag is first. The point is filled
    // through the text of its line, so a decimal separator other than "." costs the fractions.
    //
    // False when there is no fix, which fills nothing but fix, and when an error was caught: it is
    // traced as "Erreur PvtData: number text" and the point stays the one before.
    bool GetAttributes(std::span<const std::uint8_t> data, int first, DebugTrace& trace,
                       char decimalSeparator);

    // The point's "T;" line; empty while there is no point.
    [[nodiscard]] std::string getIdent(char decimalSeparator) const;

    void Class_Initialize();

private:
    void decode(std::span<const std::uint8_t> data);
    void makePoint(int first, char decimalSeparator);
};

}  // namespace marlune
