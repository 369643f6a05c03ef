#include "family/ConnectionState.h"

#include "base/VersionText.h"

namespace marlune {

std::string identText(const ConnectionState& state) {
    return "Marlune Version " + versionText() + " -  GPSId: " + state.productId +
           " Version: " + state.softwareVersion + " - " + state.description;
}

}  // namespace marlune
