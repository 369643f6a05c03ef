#include <gtest/gtest.h>

#include <algorithm>

#include "usb/GrmUSBPacket.h"
#include "usb/PacketAssembler.h"

namespace marlune {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(GrmUSBPacket, BuildsTheHeaderAndTheData) {
    EXPECT_EQ(GrmUSBPacket::build(20, 10, Bytes{7, 0}),
              (Bytes{20, 0, 0, 0, 10, 0, 0, 0, 2, 0, 0, 0, 7, 0}));
    const Bytes large = GrmUSBPacket::build(20, 254, Bytes(300, 9));
    EXPECT_EQ(large.size(), 312U);
    EXPECT_EQ((Bytes{large.begin() + 4, large.begin() + 12}), (Bytes{254, 0, 0, 0, 44, 1, 0, 0}));
}

TEST(GrmUSBPacket, SendsNoOrOneByteAsNoData) {
    const Bytes empty = {20, 0, 0, 0, 12, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(GrmUSBPacket::build(20, 12, {}), empty);
    EXPECT_EQ(GrmUSBPacket::build(20, 12, Bytes{77}), empty);
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

Bytes of(std::uint8_t id, std::size_t size) {
    const Bytes header = {20, 0, 0, 0, id, 0, 0, 0, static_cast<std::uint8_t>(size), 0, 0, 0};
    Bytes bytes(header.size() + size, id);
    std::copy(header.begin(), header.end(), bytes.begin());
    return bytes;
}

TEST(PacketAssembler, IsIndifferentToWhereBlocksEnd) {
    Bytes stream;
    for (const std::size_t size : {0U, 1U, 52U, 125U, 250U}) {
        const Bytes one = of(static_cast<std::uint8_t>(size + 1), size);
        stream.insert(stream.end(), one.begin(), one.end());
    }
    for (const std::size_t piece : {1U, 11U, 13U, 64U, 4096U}) {
        PacketAssembler assembler;
        std::vector<std::size_t> sizes;
        for (std::size_t at = 0; at < stream.size(); at += piece) {
            assembler.append(std::span(stream).subspan(at, std::min(piece, stream.size() - at)));
            while (const auto packet = assembler.take()) {
                EXPECT_EQ(packet->GetPid(), packet->GetData().size() + 1);
                sizes.push_back(packet->GetData().size());
            }
        }
        EXPECT_EQ(sizes, (std::vector<std::size_t>{0, 1, 52, 125, 250})) << piece;
        EXPECT_FALSE(assembler.isPartial());
    }
}

}  // namespace
}  // namespace marlune
