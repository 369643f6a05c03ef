#include "family/ConnectionState.h"

#include "base/VersionText.h"

namespace marlune {

void forgetReceiver(ConnectionState& state) {
    state.productId.clear();
    state.softwareVersion.clear();
    state.description.clear();
}

std::string identText(const ConnectionState& state) {
    return "Marlune Version " + versionText() + " -  GPSId: " + state.productId +
           " Version: " + state.softwareVersion + " - " + state.description;
}

}  // namespace marlune
