// A waypoint: the records of every Garmin waypoint type, the "W;" text line, and what the sentence
// codecs of other receivers fill and read.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "garmin/records/DataType.h"
#include "garmin/records/ExactPosition.h"

namespace marlune {

class Waypoint {
public:
    std::string ident;
    double latitude = 0;   // degrees, north positive
    double longitude = 0;  // degrees, east positive
    std::string comment;
    std::int16_t symbol = 0;             // in the numbering of the 2-byte symbol fields
    std::uint8_t display = 0;            // 0 symbol with name, 1 symbol only, 2 symbol with comment
    float altitude = 0;                  // metres
    std::optional<ExactPosition> exact;  // of a waypoint that came as a sentence

    // What the one-byte symbols of D103 and D107 mean.
    static constexpr std::array<std::int16_t, 16> kSymbolMap = {
        18, 10, 8, 170, 7, 150, 0, 19, 177, 14, 178, 151, 179, 171, 156, 8196};

    // Fills the fields from a record of data type format ("D108"). A D109 record that marks itself
    // as D110, and the reverse, is read as what it says. A type without altitude leaves the
    // altitude alone. Raises the index error for an unknown type, a record that ends inside a
    // field, or a one-byte symbol above 15.
    void GetAttributes(std::string_view format, std::span<const std::uint8_t> data);

    // The data type that a record is read as, which may be another than the announced one. Raises
    // the index error for an unknown type.
    static const DataType& typeOf(std::string_view format, std::span<const std::uint8_t> data);

    // The record of data type format, always at the type's full length. Raises the index error for
    // an unknown type, for texts that do not fit and for D154, and overflow for impossible
    // coordinates.
    [[nodiscard]] std::vector<std::uint8_t> Coder(std::string_view format) const;

    // "W;ident;latitude;longitude;comment;altitude;symbol;display".
    [[nodiscard]] std::string getIdent(char decimalSeparator) const;

    // In degrees and minutes, "45° 30.25"; see DegreeMinuteText.h.
    [[nodiscard]] std::string latitudeText(char decimalSeparator) const;
    [[nodiscard]] std::string longitudeText(char decimalSeparator) const;

    // Fills the fields from such a line; its numbers are read with "." only. format is the type
    // that the waypoint will be sent as: all but "D108" get "-" for blanks in the ident. Raises the
    // index error for a line of fewer than eight fields, and overflow for numbers out of range.
    void SetAttributes(std::string_view format, std::string_view line);

    // "identLatitude: 45.5 - Longitude: 2.25"; nothing stands between the ident and the rest.
    [[nodiscard]] std::string getPosition(char decimalSeparator) const;
    void SetPosition(double newLatitude, double newLongitude);

    [[nodiscard]] const std::string& getNom() const { return ident; }
    void SetIdent(std::string text) { ident = std::move(text); }

private:
    using Record = std::vector<std::uint8_t>;

    void readTexts(const DataType& type, std::span<const std::uint8_t> data);
    void readSymbol(const DataType& type, std::span<const std::uint8_t> data);
    void readDisplay(const DataType& type, std::span<const std::uint8_t> data);
    void readAltitude(const DataType& type, std::span<const std::uint8_t> data);
    void putTexts(const DataType& type, Record& record) const;
    void putSymbol(const DataType& type, Record& record) const;
    void putDisplay(const DataType& type, Record& record) const;
};

}  // namespace marlune
