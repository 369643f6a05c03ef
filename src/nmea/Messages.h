// The French texts of the sentence families, exactly as users and hosts know them.
#pragma once

namespace marlune::nmeatext {

inline constexpr const char* kTimeOut = "Délai dépassé";
inline constexpr const char* kNoPosition = "Position non disponible";
inline constexpr const char* kRejected = "Bloc rejete ";
inline constexpr const char* kDuplicate = "Doublon rejete ";
inline constexpr const char* kUnknownPoint = "Waypoint inconnu ";

// Magellan.
inline constexpr const char* kProgress = "Download en cours...";
inline constexpr const char* kWaypoints = "Waypoints";
inline constexpr const char* kTracks = "Traces";
inline constexpr const char* kRoutes = "Routes MGN";
inline constexpr const char* kUploadRoutes = "Upload Routes";
inline constexpr const char* kUploadTracks = "Upload Traces";
inline constexpr const char* kNoTrack = "Aucune Trace dans ce GPS";
inline constexpr const char* kNoRoute = "Aucune route dans ce Gps";
inline constexpr const char* kWaypointsFirst = "Download Waypoints obligatoire";
inline constexpr const char* kRealTime = "N;Trace tps réel - ";

// MLR.
inline constexpr const char* kMlrName = "GPS MLR";
inline constexpr const char* kMlrProgress = "Download en cours ....";
inline constexpr const char* kMlrDone = "Download terminé";
inline constexpr const char* kMlrBlockTracks = "Traces MLR SP";
inline constexpr const char* kMlrBlockWaypoints = "Waypoints MLR SP";
inline constexpr const char* kMlrBadBlock = "Bloc erroné ";
inline constexpr const char* kMlrTracks = "--- T;lat;lon;heure;altitude;debut -----";
inline constexpr const char* kMlrWaypoints =
    "---- W;id;lat;lon;comment;altitude;symbole;display opt. ------";
inline constexpr const char* kMlrRoutes = "Routes MLR";
inline constexpr const char* kMlrNoWaypoint = "Aucun Waypoint dans ce Gps";
inline constexpr const char* kMlrNoTrack = "Aucune trace dans ce GPS";
inline constexpr const char* kMlrNoRoute = "Pas de Routes dans ce GPS";
inline constexpr const char* kMlrNoTrackUpload = "Fonction non disponible sur les GPS MLR";

// The listener.
inline constexpr const char* kListenerNoPosition = ": pas de Position disponible";
inline constexpr const char* kListenerDone = "Transfert terminé.";

}  // namespace marlune::nmeatext
