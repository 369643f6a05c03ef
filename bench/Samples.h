// Records as receivers send them, for the benchmarks: every number differs, so that texts of any
// length are made.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace marlune::bench {

using Record = std::vector<std::uint8_t>;

// A record of that data type: any waypoint type, D200 to D202, D210, D300 to D304, D310 to D312,
// D800.
Record sampleRecord(std::string_view type, std::uint32_t number);

}  // namespace marlune::bench
