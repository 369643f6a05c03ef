#include <gmock/gmock.h>

#include "receivers/garmin/Frame.h"
#include "support/Image.h"

namespace marlune::receivers::garmin {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(Frame, IsStuffedAndSummed) {
    const std::vector<std::tuple<std::uint8_t, const char*, const char*>> cases = {
        {10, "00 00", "10 0A 02 00 00 F4 10 03"},
        {10, "", "10 0A 00 F6 10 03"},
        {10, "10 03", "10 0A 02 10 10 03 E1 10 03"},
        {6, "E8 00", "10 06 02 E8 00 10 10 10 03"},  // a checksum of 16
        {0, "00", "10 00 01 00 FF 10 03"},
        {255, "01", "10 FF 01 01 FF 10 03"},
        {1, "16x00", "10 01 10 10 16x00 EF 10 03"},  // a size of 16
    };
    for (const auto& [id, data, frame] : cases) {
        EXPECT_EQ(frameOf(id, image(data)), image(frame)) << frame;
    }
    EXPECT_EQ(frameOf(1, Bytes(300)).size(), 255U + 6U) << "255 data bytes at most";
}

// What a reader makes of a stream: "id:size" for a packet, "!id" for a bad frame.
std::string readAll(const char* stream) {
    FrameReader reader;
    std::string found;
    for (const std::uint8_t byte : image(stream)) {
        const FrameReader::Outcome outcome = reader.take(byte);
        const std::string id = std::to_string(reader.packet().id);
        if (outcome == FrameReader::Outcome::packet) {
            found += id + ":" + std::to_string(reader.packet().data.size()) + " ";
        } else if (outcome == FrameReader::Outcome::bad) {
            found += "!" + id + " ";
        }
    }
    return found;
}

TEST(FrameReader, FindsGoodFramesAndNamesBadOnes) {
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"10 0A 02 00 00 F4 10 03 10 0A 00 F6 10 03", "10:2 10:0 "},
        {"10 0A 02 10 10 03 E1 10 03", "10:2 "},
        {"10 01 10 10 16x00 EF 10 03", "1:16 "},
        {"10 0A 02 00 00 F5 10 03", "!10 "},                    // checksum
        {"10 0A 03 00 00 F3 10 03", "!10 "},                    // size too large
        {"10 0A 01 00 00 F5 10 03", "!10 "},                    // size too small
        {"10 0A 10 03", "!10 "},                                // nothing but an id
        {"'$GPGGA,1' 0D 0A 10 03 10 0A 00 F6 10 03", "10:0 "},  // noise in front
        {"10 10 0A 00 F6 10 03", "10:0 "},                      // a stray 16 in front
        {"10 0A 02 00 10 0A 00 F6 10 03", "10:0 "},             // begins in a frame
        {"0A 02 00 00 F4 10 03 10 0A 00 F6 10 03", "10:0 "},    // its start is lost
        {"10 0A FF 300x00 10 03 10 0A 00 F6 10 03", "10:0 "},   // longer than any
    };
    for (const auto& [stream, found] : cases) {
        EXPECT_EQ(readAll(stream), found) << stream;
    }
}

}  // namespace
}  // namespace marlune::receivers::garmin
