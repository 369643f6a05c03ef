// What a unit says of its protocols. Input: product id and version, then a protocol array, as long
// as a serial packet can be.
#include <algorithm>
#include <cstdint>
#include <span>
#include <string>

#include "Require.h"
#include "garmin/GpsCapability.h"

namespace {

using namespace marlune;

std::uint16_t word(std::span<const std::uint8_t> bytes) {
    return static_cast<std::uint16_t>(bytes[0] + 256 * bytes[1]);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    constexpr std::size_t kHeader = 4;
    constexpr std::size_t kLongest = kHeader + 255;
    const std::span<const std::uint8_t> input(bytes, std::min(size, kLongest));
    if (input.size() < kHeader) {
        return 0;
    }
    DebugTrace trace("");
    GpsCapability tabled;
    // The generic row serves every unit that has none of its own.
    require(tabled.GetCapability(word(input), word(input.subspan(2)), trace));
    tabled.Decoder();
    require(!tabled.waypointType.empty() && tabled.physicalProtocol == "P000");

    GpsCapability announced;
    const auto array = input.subspan(kHeader);
    announced.takeProtocolArray(array);
    announced.Decoder();
    require(announced.tags.size() == array.size() / 3);
    require(announced.getProtocoles().empty() == announced.tags.empty());
    require(announced.routePointType().empty() ==
            (announced.d106.empty() && announced.waypointType.empty()));
    return 0;
}
