#include <gtest/gtest.h>

#include "usb/GrmUSBPacket.h"

namespace marlune {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(GrmUSBPacket, BuildsTheHeaderAndTheData) {
    EXPECT_EQ(GrmUSBPacket::build(20, 10, Bytes{7, 0}),
              (Bytes{20, 0, 0, 0, 10, 0, 0, 0, 2, 0, 0, 0, 7, 0}));
    const Bytes large = GrmUSBPacket::build(20, 254, Bytes(300, 9));
    EXPECT_EQ(large.size(), 312U);
    EXPECT_EQ((Bytes{large.begin() + 4, large.begin() + 12}), (Bytes{254, 0, 0, 0, 44, 1, 0, 0}));
    // One byte goes as none.
    for (const Bytes& data : {Bytes{}, Bytes{77}}) {
        EXPECT_EQ(GrmUSBPacket::build(20, 12, data), (Bytes{20, 0, 0, 0, 12, 0, 0, 0, 0, 0, 0, 0}));
    }
}

TEST(GrmUSBPacket, ParsesWhatCame) {
    struct Case {
        const char* what;
        Bytes received;
        int type;
        int pid;
        std::uint32_t size;
        Bytes data;
    };
    const Case cases[] = {
        {"whole", {20, 0, 0, 0, 0x34, 0x12, 0, 0, 2, 0, 0, 0, 8, 9}, 20, 0x1234, 2, {8, 9}},
        {"bytes beyond the size", {20, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 8, 9}, 20, 1, 1, {8}},
        {"less than announced", {20, 0, 0, 0, 1, 0, 0, 0, 9, 0, 0, 0, 8}, 20, 1, 9, {8}},
        {"4 GB announced",
         {20, 0, 0, 0, 1, 0, 0, 0, 255, 255, 255, 255, 8},
         20,
         1,
         0xFFFFFFFF,
         {8}},
        {"cut in the size", {20, 0, 0, 0, 1, 0, 0, 0, 9, 1}, 20, 1, 0x109, {}},
        {"cut in the id", {20, 0, 0, 0, 6}, 20, 6, 0, {}},
        {"nothing", {}, 0, 0, 0, {}},
    };
    for (const Case& c : cases) {
        const GrmUSBPacket packet(c.received);
        EXPECT_EQ(packet.GetPtype(), c.type) << c.what;
        EXPECT_EQ(packet.GetPid(), c.pid) << c.what;
        EXPECT_EQ(packet.GetDataSize(), c.size) << c.what;
        EXPECT_EQ(packet.GetData(), c.data) << c.what;
    }
}

}  // namespace
}  // namespace marlune
