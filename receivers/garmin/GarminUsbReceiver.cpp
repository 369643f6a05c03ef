#include "receivers/garmin/GarminUsbReceiver.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <utility>

namespace marlune::receivers::garmin {
namespace {

constexpr std::size_t kHeader = 12;
constexpr std::uint8_t kUsbLayer = 0;
constexpr std::uint8_t kApplication = 20;
constexpr std::uint8_t kStartSession = 5;
constexpr std::uint8_t kSessionStarted = 6;

std::vector<std::uint8_t> usbPacket(std::uint8_t type, std::uint8_t id,
                                    std::span<const std::uint8_t> data) {
    std::vector<std::uint8_t> bytes(kHeader + data.size());
    bytes[0] = type;
    bytes[4] = id;
    bytes[8] = static_cast<std::uint8_t>(data.size() % 256);
    bytes[9] = static_cast<std::uint8_t>(data.size() / 256 % 256);
    std::copy(data.begin(), data.end(), bytes.begin() + kHeader);
    return bytes;
}

}  // namespace

GarminUsbReceiver::GarminUsbReceiver(Settings settings) : GarminReceiver(std::move(settings)) {
    keepApart();
}

void GarminUsbReceiver::heard(std::span<const std::uint8_t> bytes, double now) {
    if (bytes.size() < kHeader) {
        complain("a packet of " + std::to_string(bytes.size()) + " bytes");
        return;
    }
    const std::size_t size = bytes[8] + 256U * bytes[9] + 65536U * bytes[10];
    if (bytes[11] != 0 || size != bytes.size() - kHeader || bytes[5] != 0) {
        complain("a packet whose header does not fit it");
        return;
    }
    const std::uint8_t id = bytes[4];
    if (bytes[0] == kUsbLayer && id == kStartSession) {
        constexpr std::array<std::uint8_t, 4> kUnitId = {0xD2, 0x02, 0x96, 0x49};
        inSession_ = true;
        say("session", usbPacket(kUsbLayer, kSessionStarted, kUnitId));
    } else if (bytes[0] == kApplication && inSession_) {
        take({id, {bytes.begin() + kHeader, bytes.end()}}, now);
    } else {
        complain("packet " + std::to_string(id) + " of type " + std::to_string(bytes[0]) +
                 (inSession_ ? "" : " before a session"));
    }
}

std::vector<std::uint8_t> GarminUsbReceiver::framed(std::uint8_t id,
                                                    std::span<const std::uint8_t> data) const {
    return usbPacket(kApplication, id, data);
}

std::unique_ptr<VirtualReceiver> makeGarminUsbReceiver(const ReceiverOptions& options) {
    for (const std::string& fault : options.faults) {
        if (fault.starts_with("refuse")) {
            throw std::invalid_argument("\"" + fault + "\": nothing is refused over USB");
        }
    }
    return std::make_unique<GarminUsbReceiver>(garminSettings(options));
}

}  // namespace marlune::receivers::garmin
