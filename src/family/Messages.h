// The French texts that are told for every family, exactly as users know them.
#pragma once

namespace marlune::text {

inline constexpr const char* kNotAvailable = "Protocole non disponible pour ce GPS";
inline constexpr const char* kNotSupported = "Protocole non supporté par ce GPS";

}  // namespace marlune::text
