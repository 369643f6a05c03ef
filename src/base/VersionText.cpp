#include "base/VersionText.h"

#include "marlune/Version.h"

namespace marlune {

std::string version() {
    return std::to_string(MARLUNE_VERSION_MAJOR) + '.' + std::to_string(MARLUNE_VERSION_MINOR) +
           '.' + std::to_string(MARLUNE_VERSION_PATCH);
}

std::string versionText() {
    return version();
}

}  // namespace marlune
