// The French texts of the sentence families, exactly as users and hosts know them. Those that are
// told for every family are the Garmin procedures'.
#pragma once

#include "garmin/Messages.h"

namespace marlune::nmeatext {

inline constexpr const char* kTimeOut = "Délai dépassé";
inline constexpr const char* kNoPosition = text::kNoPosition;
inline constexpr const char* kRejected = "Bloc rejete ";
inline constexpr const char* kDuplicate = "Doublon rejete ";
inline constexpr const char* kUnknownPoint = "Waypoint inconnu ";

// Magellan.
inline constexpr const char* kMgnProtocols = "Protocole NMEA propriétaire MAGELLAN";
inline constexpr const char* kProgress = "Download en cours...";
inline constexpr const char* kWaypoints = "Waypoints";
inline constexpr const char* kTracks = "Traces";
inline constexpr const char* kRoutes = "Routes MGN";
inline constexpr const char* kUploadRoutes = text::kUploadRoutes;
inline constexpr const char* kUploadTracks = text::kUploadTracks;
inline constexpr const char* kNoTrack = "Aucune Trace dans ce GPS";
inline constexpr const char* kNoRoute = text::kNoRoutes;
inline constexpr const char* kWaypointsFirst = "Download Waypoints obligatoire";
inline constexpr const char* kRealTime = text::kRealTimeHeader;

// MLR.
inline constexpr const char* kMlrProtocols = "Protocole NMEA propriétaire MLR";
inline constexpr const char* kMlrName = "GPS MLR";
inline constexpr const char* kMlrProgress = "Download en cours ....";
inline constexpr const char* kMlrDone = "Download terminé";
inline constexpr const char* kMlrBlockTracks = "Traces MLR SP";
inline constexpr const char* kMlrBlockWaypoints = "Waypoints MLR SP";
inline constexpr const char* kMlrBadBlock = "Bloc erroné ";
inline constexpr const char* kMlrTracks = text::kTracksHeader;
inline constexpr const char* kMlrWaypoints = text::kWaypointsHeader;
inline constexpr const char* kMlrRoutes = "Routes MLR";
inline constexpr const char* kMlrNoWaypoint = text::kNoWaypoints;
inline constexpr const char* kMlrNoTrack = text::kNoTracks;
inline constexpr const char* kMlrNoRoute = "Pas de Routes dans ce GPS";
inline constexpr const char* kMlrNoTrackUpload = "Fonction non disponible sur les GPS MLR";

// The listener.
inline constexpr const char* kListenerNoPosition = ": pas de Position disponible";
inline constexpr const char* kListenerDone = text::kRealTimeDone;

}  // namespace marlune::nmeatext
