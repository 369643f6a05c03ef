// What stands in front of a track's points: the records D310, D311 and D312 and the "N;" text line.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace marlune {

class TrkHeader {
public:
    bool display = false;     // shown on the receiver's map
    std::uint8_t colour = 0;  // in the receiver's numbering
    std::string name;
    std::int16_t index = 0;  // the track's number, written to D311 and never read

    // Fills the fields from a record of data type format; D311 fills nothing. Raises the index
    // error for a D310 or D312 record of fewer than two bytes.
    void GetAttributes(std::string_view format, std::span<const std::uint8_t> data);

    // The record of data type format. All types carry the name from byte 2 on, also D311.
    [[nodiscard]] std::vector<std::uint8_t> Coder(std::string_view format) const;

    // "N;name".
    [[nodiscard]] std::string getIdent() const;

    [[nodiscard]] const std::string& getNom() const { return name; }

    // text: an "N;" line, whose second field is taken as it stands, or a bare name.
    void SetAttributes(std::string_view format, std::string_view text, std::int16_t newIndex);
};

}  // namespace marlune
