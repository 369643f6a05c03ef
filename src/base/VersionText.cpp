#include "base/VersionText.h"

namespace marlune {

std::string versionText() {
    return MARLUNE_VERSION;
}

}  // namespace marlune
