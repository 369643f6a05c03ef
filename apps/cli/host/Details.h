// Records and reports as JSON, beside the texts of the control's contract.
//
// What a record does not have is left out. Angles are degrees, lengths metres, times ISO 8601 in
// UTC.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "control/Surface.h"

namespace marlune::cli {

// "record": the one that the event is about, which is the last of its kind. Nothing for events
// that are about none.
void addRecord(nlohmann::ordered_json& object, const surface::Event& event, const Records& records);

// "transfer" or "connection": the report that the member has just made, and the "record" of the
// position that it read. Nothing for others.
void addReport(nlohmann::ordered_json& object, const surface::Member& member,
               const GpsControl& control);

}  // namespace marlune::cli
