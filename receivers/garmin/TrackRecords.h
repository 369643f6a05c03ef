// Track headers (D310, D311, D312) and track points (D300 to D304).
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "receivers/DeviceData.h"

namespace marlune::receivers::garmin {

// D310 and D312 hold the name, D311 the index, which counts the tracks from 0.
std::vector<std::uint8_t> trackHeaderRecord(const std::string& type, const Track& track, int index);
// The track's name; for D311 one made of the index. Throws std::out_of_range when the record is too
// short.
std::string trackNameOf(const std::string& type, std::span<const std::uint8_t> record);

// D303 and D304 cannot say that a segment begins; trackPointRecords() says it in their way.
std::vector<std::uint8_t> trackPointRecord(const std::string& type, const TrackPoint& point);
TrackPoint trackPointOf(const std::string& type, std::span<const std::uint8_t> record);

// The records of a track's points. In D303 and D304 two points without position stand in front of
// every segment but the first.
std::vector<std::vector<std::uint8_t>> trackPointRecords(const std::string& type,
                                                         const Track& track);
// Takes such pairs out again and marks the segments that they stand for.
void joinSegments(const std::string& type, Track& track);

}  // namespace marlune::receivers::garmin
