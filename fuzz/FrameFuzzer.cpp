// Frames: built and taken apart, unstuffed, and read from a line that carries anything. Input: what
// arrives on the line; its bytes are a packet's id and data as well.
#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "FuzzPort.h"
#include "Require.h"
#include "garmin/link/GpsPacket.h"
#include "garmin/link/SerialGarminLink.h"

namespace {

using namespace marlune;
using Data = std::span<const std::uint8_t>;

bool isPacket(GpsPacket& packet, std::uint8_t pid, Data data) {
    const auto got = packet.GetData();
    return packet.GetPid() == pid && std::equal(got.begin(), got.end(), data.begin(), data.end());
}

void parse(Data frame) {
    GpsPacket packet;
    const bool parsed = packet.Parse(frame);
    require(parsed || isPacket(packet, 0, {}));
    require(packet.GetData().size() <= 255);
}

// A link on a line.
struct Reader {
    explicit Reader(Data bytes, std::size_t tellsAhead = FuzzPort::kAll)
        : line(bytes, tellsAhead) {}

    [[nodiscard]] bool somethingWaits() const { return line.device->left() > 0; }

    FuzzLine line;
    PortLease lease{line.port};
    SerialGarminLink link{line.services, lease};
};

std::vector<std::vector<std::uint8_t>> framesOf(Reader& reader) {
    std::vector<std::vector<std::uint8_t>> frames;
    while (reader.somethingWaits()) {
        frames.push_back(reader.link.grmReadPacket(1));
        require(!frames.back().empty() && frames.back().size() <= 9 + 2 * 255);
        parse(frames.back());
    }
    return frames;
}

// What was read ahead is taken in one piece, and that makes no difference.
void readFrames(Data bytes) {
    Reader inPieces(bytes);
    Reader byteByByte(bytes, 0);
    require(framesOf(inPieces) == framesOf(byteByByte));
}

void readTimedFrames(Data bytes) {
    Reader reader(bytes);
    while (reader.somethingWaits()) {
        const auto frame = reader.link.grmReadPacketTimed(2);
        require(frame.size() >= 5);  // one without its checksum ends, too
        parse(frame);
    }
}

// What is built is read back. An id or a size of 16 is doubled, and the size is then taken from the
// wrong byte: such packets are read as something else, and that is meant so.
void thereAndBack(std::uint8_t pid, Data data) {
    GpsPacket built;
    const auto frame = built.Build(pid, data);
    require(frame.empty() == (data.size() > 255));
    if (frame.empty()) {
        return;
    }
    GpsPacket parsed;
    require(parsed.Parse(frame) && isPacket(parsed, pid, data));
    if (pid != kDle && data.size() != kDle) {
        Reader reader(frame);
        const LinkPacket received = reader.link.receive();
        require(received.pid == pid &&
                std::equal(received.data.begin(), received.data.end(), data.begin(), data.end()));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const Data input(bytes, size);
    parse(input);
    readFrames(input);
    readTimedFrames(input);
    if (!input.empty()) {
        thereAndBack(input[0], input.subspan(1));
    }
    return 0;
}
