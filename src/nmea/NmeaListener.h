// The listener to a stream of NMEA sentences, for receivers of every family.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "host/Services.h"
#include "nmea/NmeaState.h"
#include "serial/ComPort.h"

namespace marlune {

// Listens on the chosen port at 4800 baud, whatever the family, and raises PhraseNMEA for every
// sentence that contains NMEACode and has "N" or "S" in its fourth field. Ends when no such
// sentence came for Delai seconds, on StopNMEA (NmeaState::stopRequested), when the host requests a
// stop, or when a handler closes the port; then tells the user how it ended and raises EndDownload
// ("NMEA_END").
//
// closeConnection closes what the control has open, port or USB handle, but not the trace: that is
// opened for appending at the start and closed at the end.
//
// True when the last matching sentence had a position. A port that does not open shows the system's
// text and gives false, with no end event.
bool startNmea(Services& services, ComPort& port, NmeaState& state,
               const std::function<void()>& closeConnection, const std::string& NMEACode,
               std::int16_t Delai);

}  // namespace marlune
