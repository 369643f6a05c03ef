// The French texts of units that are drives, exactly as users know them; the headers and boxes of
// their transfers are the Garmin procedures'.
#pragma once

namespace marlune::storagetext {

inline constexpr const char* kProtocols = "Donnees au format GPX - ";

// Lines of the trace. A drive that is a unit:
inline constexpr const char* kDriveFound = "Ouverture Fichier USB GPX OK";
// A file that cannot be read or parsed:
inline constexpr const char* kError = "Erreur: ";
inline constexpr const char* kErrorSource = "source:";
inline constexpr const char* kErrorText = "motid: ";
inline constexpr const char* kErrorLine = "ligne: ";
inline constexpr const char* kErrorPosition = "position: ";
inline constexpr const char* kErrorOffset = "Position dans le fichier: ";
// A folder outside the drive:
inline constexpr const char* kPathRefused = "Chemin refusé: ";

}  // namespace marlune::storagetext
