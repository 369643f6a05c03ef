// Connecting and disconnecting: opens what the protocol code names and runs the family's
// identification.
#pragma once

#include <string>

#include "control/ControlState.h"

namespace marlune {

// Takes "GRM", "mgn;9600" and the like apart into the protocol code and the Magellan rate.
void setGpsMark(ControlState& control, const std::string& value);

bool connectReceiver(ControlState& control);
void disconnectReceiver(ControlState& control);
// Ends what runs and closes what is open, but leaves the trace open.
void closeDevice(ControlState& control);
// The control is about to be destroyed, perhaps by a handler of what runs.
void abandonDevice(ControlState& control);

}  // namespace marlune
