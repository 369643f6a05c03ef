#include "marlune/Host.h"

#include <chrono>

namespace marlune {

std::string Host::chooseFile(const std::string& /*defaultExtension*/,
                             const std::string& /*startFolder*/) {
    return {};
}

std::string Host::applicationFolder() {
    return {};
}

double Host::utcNow() {
    using Days = std::chrono::duration<double, std::ratio<86400>>;
    constexpr double kUnixEpoch = 25569;  // 01/01/1970
    return kUnixEpoch + Days(std::chrono::system_clock::now().time_since_epoch()).count();
}

}  // namespace marlune
