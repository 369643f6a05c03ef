// Route headers (D200, D201, D202) and links between route points (D210).
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "receivers/DeviceData.h"

namespace marlune::receivers::garmin {

// D200 holds the number alone, D201 number and name, D202 the name alone.
std::vector<std::uint8_t> routeHeaderRecord(const std::string& type, const Route& route);
// The route without its points. Throws std::out_of_range when the record is too short.
Route routeOf(const std::string& type, std::span<const std::uint8_t> record);

// A direct link of that ident.
std::vector<std::uint8_t> linkRecord(const std::string& ident);
// The link's ident.
std::string linkOf(std::span<const std::uint8_t> record);

}  // namespace marlune::receivers::garmin
