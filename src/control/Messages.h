// The French texts of connecting, exactly as users know them; all but the first stand in the trace.
#pragma once

namespace marlune::controltext {

inline constexpr const char* kNoConnection = "Connexion Impossible";

inline constexpr const char* kPortOpened = " Port Connecté: ";
inline constexpr const char* kHandle = " Handle: ";
inline constexpr const char* kPortClosed = " Port Fermé: ";
inline constexpr const char* kNoUsbFile = "Fichier USB non Trouvé";
inline constexpr const char* kNoUsbUnit = "Clef de Registre USB GARMIN non trouvée";

}  // namespace marlune::controltext
