// A track point (not the debug trace, which is DebugTrace): the records D300 to D304, the "T;" text
// line, and what the sentence codecs of other receivers fill and read.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "garmin/records/ExactPosition.h"

namespace marlune {

class Trace {
public:
    double latitude = 0;                 // degrees, north positive
    double longitude = 0;                // degrees, east positive
    double pTime = 0;                    // days since 30/12/1899; 0 when the point has no time
    float altitude = 0;                  // metres; 0 when unknown
    bool pFirst = false;                 // the point starts a new segment
    std::optional<ExactPosition> exact;  // of a point that came as a sentence

    // Fills the fields from a record of data type format. False for the point without position that
    // receivers send (180, 180 to the nearest degree); nothing but the position is filled then.
    // Types without a new-segment byte leave pFirst alone, an unknown or empty type gives position
    // and time. Raises the index error for a record that ends inside a field.
    bool GetAttributes(std::string_view format, std::span<const std::uint8_t> data);

    // The record of type D300, D301 or D302. Raises the index error for any other type, and
    // overflow for impossible coordinates.
    [[nodiscard]] std::vector<std::uint8_t> Coder(std::string_view format) const;

    // "T;latitude;longitude;time;altitude;first": the time in days, first -1 or 0.
    [[nodiscard]] std::string getIdent(char decimalSeparator) const;

    // In degrees and minutes, "45° 30.25"; see DegreeMinuteText.h.
    [[nodiscard]] std::string latitudeText(char decimalSeparator) const;
    [[nodiscard]] std::string longitudeText(char decimalSeparator) const;

    // Fills the fields from such a line; its numbers are read with "." only. Raises the index error
    // for a line of fewer than six fields, and overflow for an altitude out of range.
    void SetAttributes(std::string_view format, std::string_view line);

    // The name of the track that the point belongs to.
    [[nodiscard]] const std::string& GetName() const { return name_; }
    void SetName(std::string text) { name_ = std::move(text); }

private:
    std::string name_;
};

}  // namespace marlune
