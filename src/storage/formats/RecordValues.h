// What the formats have in common about the values of records.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "marlune/RecordFiles.h"
#include "storage/formats/GpxValues.h"

namespace marlune {

// A position as files have it: to the schema's ranges, which count longitudes up to, not including,
// 180. Nothing for a position that is not on earth.
struct FilePosition {
    double latitude = 0;
    double longitude = 0;
};
std::optional<FilePosition> filePosition(double latitude, double longitude);

// The shortest text that reads back to the same number.
std::string fileNumber(double value);
std::string fileNumber(float value);
// Empty for nothing.
std::string fileNumber(std::optional<float> value);
std::string fileTime(std::optional<double> time);

// 0 symbol with name, 1 symbol only, 2 symbol with comment: without the places that D109 and D110
// have for them in a byte.
std::optional<int> fileDisplay(const WaypointRecord& waypoint);

// "00ff...": the subclass of a link, and back; nothing for what is none.
std::string subclassText(const RouteLinkRecord& link);
std::optional<std::array<std::uint8_t, 18>> subclassOf(std::string_view text);

// A number of a file as a single; nothing when there is none, or none that an altitude could be.
std::optional<float> metresOf(std::string_view text);
// A whole number of a file in a range.
std::optional<int> wholeNumberOf(std::string_view text, int lowest, int highest);

}  // namespace marlune
