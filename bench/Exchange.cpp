#include "Exchange.h"

#include <array>
#include <sstream>

#include "Samples.h"
#include "garmin/link/GpsPacket.h"
#include "garmin/link/PacketIds.h"

namespace marlune::bench {
namespace {

using Two = std::array<std::uint8_t, 2>;

std::size_t frameSize(std::uint8_t pid, std::span<const std::uint8_t> data) {
    return GpsPacket().Build(pid, data).size();
}

std::size_t acknowledgement(std::uint8_t pid) {
    return frameSize(pid::kAck, Two{pid, 0});
}

std::size_t command(std::uint8_t code) {
    return frameSize(pid::kCommand, Two{code, 0});
}

std::vector<std::uint8_t> protocolArray(const std::string& protocols) {
    std::vector<std::uint8_t> array;
    std::istringstream words(protocols);
    for (std::string tag; words >> tag;) {
        const auto number = static_cast<unsigned>(std::stoi(tag.substr(1)));
        array.push_back(static_cast<std::uint8_t>(tag[0]));
        array.push_back(static_cast<std::uint8_t>(number % 256));
        array.push_back(static_cast<std::uint8_t>(number / 256));
    }
    return array;
}

}  // namespace

void Exchange::add(std::size_t heard) {
    turns_.push_back({heard, said_.size()});
}

void Exchange::say(std::uint8_t pid, std::span<const std::uint8_t> data) {
    const std::vector<std::uint8_t> frame = GpsPacket().Build(pid, data);
    said_.insert(said_.end(), frame.begin(), frame.end());
}

Exchange::Turn Exchange::turn(std::size_t index) const {
    const std::size_t begin = turns_[index].begin;
    const std::size_t end = index + 1 < turns_.size() ? turns_[index + 1].begin : said_.size();
    return {turns_[index].heard, {said_.data() + begin, end - begin}};
}

std::size_t Exchange::bytes() const {
    std::size_t count = said_.size();
    for (const Bounds& turn : turns_) {
        count += turn.heard;
    }
    return count;
}

Exchange Exchange::handshake(const std::string& protocols) {
    constexpr std::array<std::uint8_t, 5> kProduct = {77, 0, 24, 1, 0};
    Exchange exchange;
    exchange.add(command(command::kAbort));
    exchange.add(frameSize(pid::kProductRequest, std::array<std::uint8_t, 1>{0}));
    exchange.say(pid::kAck, Two{pid::kProductRequest, 0});
    exchange.say(pid::kProductData, kProduct);
    exchange.add(acknowledgement(pid::kProductData));
    exchange.say(pid::kProtocolArray, protocolArray(protocols));
    exchange.add(acknowledgement(pid::kProtocolArray));
    return exchange;
}

Exchange Exchange::download(const std::string& type, std::uint32_t records) {
    const bool waypoints = type.starts_with("D1");
    const std::uint8_t code = waypoints ? command::kTransferWaypoints : command::kTransferTracks;
    const std::uint8_t pid = waypoints ? pid::kWaypoint : pid::kTrackPoint;
    Exchange exchange;
    exchange.add(command(code));
    exchange.say(pid::kRecords, Two{static_cast<std::uint8_t>(records % 256),
                                    static_cast<std::uint8_t>(records / 256)});
    exchange.add(acknowledgement(pid::kRecords));
    for (std::uint32_t i = 0; i < records; ++i) {
        exchange.say(pid, sampleRecord(type, i));
        exchange.add(acknowledgement(pid));
    }
    exchange.say(pid::kTransferComplete, Two{code, 0});
    exchange.add(acknowledgement(pid::kTransferComplete));
    return exchange;
}

}  // namespace marlune::bench
