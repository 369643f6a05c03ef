#include "host/ConnectionState.h"

namespace marlune {

std::string versionText() {
    return MARLUNE_VERSION;
}

std::string identText(const ConnectionState& state) {
    return "Marlune Version " + versionText() + " -  GPSId: " + state.productId +
           " Version: " + state.softwareVersion + " - " + state.description;
}

}  // namespace marlune
