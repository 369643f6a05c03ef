// The French texts of the Garmin procedures, exactly as users know them.
#pragma once

#include <cstdint>
#include <string>

#include "family/Messages.h"
#include "host/Services.h"

namespace marlune::text {

inline constexpr const char* kNoAnswer = "GPS éteint ou mal connecté";
inline constexpr const char* kWrongProtocol = "Protocole Incorrect, Vérifiez votre GPS";
inline constexpr const char* kChooseOption = "Choisissez l'option GRMN/GRMN.";
inline constexpr const char* kProtocolError = "Erreur de protocole - pid = ";
inline constexpr const char* kAckError = "Erreur de protocole(Ack) - pid = ";
inline constexpr const char* kProductError = "Erreur de protocole(Product) - pid = ";
inline constexpr const char* kSessionFailed = "Problème Ouverture de session";

// Lines of the trace.
inline constexpr const char* kUsbPath = "Clef USB ";
inline constexpr const char* kUsbOpened = "Ouverture Fichier USB OK";
inline constexpr const char* kNoUsbFile = "Fichier USB non Trouvé";

inline constexpr const char* kTableProtocols = "Protocoles de la table des produits";
inline constexpr const char* kGenericProtocols = "Protocoles supposés: produit inconnu";
inline constexpr const char* kExtendedProduct = "Paquet 248 .....";

inline constexpr const char* kNoWaypoints = "Aucun Waypoint dans ce Gps";
inline constexpr const char* kNoTracks = "Aucune trace dans ce GPS";
inline constexpr const char* kNoRoutes = "Aucune route dans ce Gps";
// The two differ in one letter's case, and hosts may look for either.
inline constexpr const char* kInterrupted = "Transfert Interrompu";
inline constexpr const char* kTracksInterrupted = "Transfert interrompu";
inline constexpr const char* kDone = "Transfert terminé";
inline constexpr const char* kRealTimeDone = "Transfert terminé.";
inline constexpr const char* kNoPosition = "Position non disponible";
inline constexpr const char* kProblem = "Problème";
inline constexpr const char* kWaypointUploadError = "Erreur Upload Waypoints ";
inline constexpr const char* kRouteUploadError = "Erreur Upload Route ";
inline constexpr const char* kTrackUploadError = "Erreur Upload Traces ";

inline constexpr const char* kWaypointsHeader =
    "---- W;id;lat;lon;comment;altitude;symbole;display opt. ------";
inline constexpr const char* kTracksHeader = "--- T;lat;lon;heure;altitude;debut -----";
inline constexpr const char* kRoutesHeader = "-------- Routes --------";
inline constexpr const char* kProximitiesHeader = "--- Proximites ------";
inline constexpr const char* kUploadWaypoints = "Waypoints";
inline constexpr const char* kUploadRoutes = "Upload Routes";
inline constexpr const char* kUploadTracks = "Upload Traces";
inline constexpr const char* kRealTimeHeader = "N;Trace tps réel - ";
inline constexpr const char* kVoltages = "Tensions ";
inline constexpr const char* kPositionName = " - Position du GPS: ";

}  // namespace marlune::text

namespace marlune {

// The text and the id, critical. Silence is no error once the host wants an end.
inline void showProtocolError(Host& host, std::uint16_t pid,
                              const char* text = text::kProtocolError) {
    if (pid != 0 || !host.stopRequested()) {
        host.messageBox(text + std::to_string(pid), BoxIcon::critical);
    }
}

}  // namespace marlune
