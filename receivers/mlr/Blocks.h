// The data blocks of MLR receivers:
//
//   0x8B, four characters of block number, number of records (1), records, CR LF
//
// all records of a block having one length. A block with the text "DEBUT" instead of records opens
// a list, one with "FIN" closes it. A block's number counts from 0001 and is 0000 in those two.
//
// Nothing keeps a record from holding the bytes of a block's end, or a name the text "FIN": such a
// list comes out wrong at the other end of the line, as it does with a real unit.
#pragma once

#include <string>
#include <vector>

#include "receivers/DeviceData.h"

namespace marlune::receivers::mlr {

// The whole list, opening and closing block included.
std::vector<std::string> trackBlocks(const std::vector<Track>& tracks);
std::vector<std::string> placeBlocks(const std::vector<Place>& places);

// A track point's record, 16 bytes, most significant first: number (2), latitude, longitude (4
// each, thousandths of a minute, signed), altitude (2, metres, signed), time (4, seconds since
// 06/01/1980, 0 when unknown). Numbers count from 1 in each segment.
std::string trackRecord(const TrackPoint& point, int number);

}  // namespace marlune::receivers::mlr
