// What a unit says of the present moment: date and time (D600), position (D700), and the
// position-velocity-time record (D800) of somebody who walks.
#pragma once

#include <cstdint>
#include <vector>

#include "receivers/Walk.h"

namespace marlune::receivers::garmin {

// Dates are days since 30/12/1899, UTC.
std::vector<std::uint8_t> dateRecord(double date);
// Radians, as units send them.
std::vector<std::uint8_t> positionRecord(const Motion& motion);
std::vector<std::uint8_t> pvtRecord(const Motion& motion, double date);

}  // namespace marlune::receivers::garmin
