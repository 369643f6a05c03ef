// A route: its header record (D200, D201, D202), its "R;" text line, and its points in order.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "garmin/records/Waypoint.h"

namespace marlune {

class Route {
public:
    std::uint8_t numRte = 0;  // the route's number

    // Fills number and description from a header record; D202 carries no number and leaves it.
    // Raises the index error for a record that ends inside a field.
    void GetAttributes(std::string_view format, std::span<const std::uint8_t> data);

    // The header record, 21 bytes in every type. The number is written for D201 only.
    [[nodiscard]] std::vector<std::uint8_t> Coder(std::string_view format) const;

    // "R;number;description".
    [[nodiscard]] std::string getIdent() const;

    // Fills number and description from such a line. Raises a type mismatch when the number is not
    // one from 0 to 255, and the index error for a line of fewer than three fields.
    void SetAttributes(std::string_view line);

    [[nodiscard]] const std::string& Description() const { return description_; }
    void setDescription(std::string text) { description_ = std::move(text); }

    // Appends a point. Raises overflow beyond 32767 points.
    void AddWaypt(Waypoint waypoint);
    // Kept for its name: nothing here calls it.
    [[nodiscard]] std::int16_t NbWayPts() const { return count_; }
    [[nodiscard]] const std::vector<Waypoint>& Waypoints() const { return waypoints_; }
    [[nodiscard]] std::vector<Waypoint>& Waypoints() { return waypoints_; }

private:
    std::string description_;
    std::vector<Waypoint> waypoints_;
    std::int16_t count_ = 0;
};

}  // namespace marlune
