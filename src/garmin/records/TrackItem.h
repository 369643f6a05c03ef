#pragma once

#include <variant>

#include "garmin/records/Trace.h"
#include "garmin/records/TrkHeader.h"

namespace marlune {

// What a track upload sends in its order: a header, or a point of the track that it began.
using TrackItem = std::variant<TrkHeader, Trace>;

}  // namespace marlune
