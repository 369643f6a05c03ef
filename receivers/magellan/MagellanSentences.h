// The records of Magellan receivers.
//
// $PMGNWPL,4555.417,N,00652.167,E,0001037,M,CHAMX,Chamonix - gare,a*hh
// position, altitude in metres, name, comment, icon
//
// $PMGNTRK,4555.487,N,00652.622,E,01042,M,064000.02,A,MONTENVERS,140706*hh
// position, altitude in metres, time, "A" for a fix, track, day (both left out in the short form)
//
// $PMGNRTE,2,1,c,3,HOLIDAY,HOME,a,BRIDGE,a*hh     see RouteSentences.h
#pragma once

#include <optional>
#include <string>

#include "receivers/DeviceData.h"
#include "receivers/nmea/HeardSentence.h"
#include "receivers/nmea/RouteSentences.h"

namespace marlune::receivers::magellan {

inline constexpr nmea::RouteStyle kRoutes = {"PMGNRTE", true, 2};

// Whole sentences. A point without a known day has no day in its sentence.
std::string placeSentence(const Place& place);
std::string pointSentence(const TrackPoint& point, const std::string& track);
std::string shortPointSentence(const TrackPoint& point);

struct HeardPoint {
    std::string track;
    TrackPoint point;  // without a day, its time is the part of a day
};

// Nothing when the sentence is malformed.
std::optional<Place> readPlace(const nmea::HeardSentence& heard);
std::optional<HeardPoint> readPoint(const nmea::HeardSentence& heard);

}  // namespace marlune::receivers::magellan
