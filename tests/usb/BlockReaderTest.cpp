#include <gtest/gtest.h>

#include <memory>
#include <numeric>

#include "support/ScriptedUsb.h"
#include "support/TracedServices.h"
#include "usb/BlockReader.h"

namespace marlune {
namespace {

using Bytes = ScriptedUsb::Bytes;
using Blocks = std::vector<Bytes>;

const Bytes kRequest = {20, 0, 0, 0, 10, 0, 0, 0, 2, 0, 0, 0, 7, 0};
const Bytes kDataAvailable = ScriptedUsb::packet(0, 2);
const Bytes kEmpty;

Bytes app(std::uint16_t id, std::size_t size = 4) {
    Bytes data(size);
    std::iota(data.begin(), data.end(), std::uint8_t{1});
    return ScriptedUsb::packet(20, id, data);
}

// A packet as a pipe of 64-byte packets brings it.
Blocks pieces(const Bytes& packet, std::size_t size = 64) {
    Blocks blocks;
    for (std::size_t at = 0; at < packet.size(); at += size) {
        const auto from = packet.begin() + static_cast<std::ptrdiff_t>(at);
        blocks.emplace_back(from,
                            from + static_cast<std::ptrdiff_t>(std::min(size, packet.size() - at)));
    }
    return blocks;
}

Blocks operator+(Blocks left, const Blocks& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

class BlockReaderTest : public testing::Test {
protected:
    BlockReaderTest() { port_.open(); }

    // The ids of the packets gathered from one answer; each packet's data is checked.
    std::vector<int> gather(Blocks interrupt, Blocks bulk = {}) {
        usb_.play(
            {{.write = kRequest, .interrupt = std::move(interrupt), .bulk = std::move(bulk)}});
        UsbLease lease(port_);
        BlockReader reader(lease, services_);
        std::vector<int> ids;
        for (const GrmUSBPacket& packet : reader.getBlocks(kRequest)) {
            ids.push_back(packet.GetPid());
            EXPECT_EQ(ScriptedUsb::packet(20, packet.GetPid(), packet.GetData()),
                      app(packet.GetPid(), packet.GetData().size()));
        }
        EXPECT_EQ(usb_.problems(), "");
        return ids;
    }

    [[nodiscard]] int traced(const std::string& text) {
        const std::string all = host_.traceText();
        int count = 0;
        for (auto at = all.find(text); at != std::string::npos; at = all.find(text, at + 1)) {
            ++count;
        }
        return count;
    }

    GpsControlEvents events_;
    TracedServices traced_{events_};
    FakeHost& host_ = traced_.host;
    Services& services_ = traced_.services;
    ScriptedUsb* owned_ = new ScriptedUsb(host_);
    ScriptedUsb& usb_ = *owned_;
    UsbPort port_{std::unique_ptr<UsbDevice>(owned_)};
};

TEST_F(BlockReaderTest, InterruptModeEndsWithSilence) {
    EXPECT_EQ(gather({app(27, 2), app(35), app(12, 2)}), (std::vector<int>{27, 35, 12}));
    EXPECT_DOUBLE_EQ(host_.elapsed(), 0.5);
    EXPECT_EQ(traced("GetBlocks: 14 - 20 0 0 0 27"), 1) << "the first block only";
    EXPECT_EQ(traced("GetBlocks: "), 1);
    EXPECT_EQ(traced("Mode Interrupt"), 1);
    EXPECT_EQ(traced("Mode BULK"), 0);
}

TEST_F(BlockReaderTest, NothingAtAllIsOneTimeOut) {
    EXPECT_EQ(gather({}), std::vector<int>{});
    EXPECT_DOUBLE_EQ(host_.elapsed(), 0.5);
    EXPECT_EQ(traced("GetBlocks: "), 0);
}

TEST_F(BlockReaderTest, PacketsLargerThanABlockArePutTogether) {
    // 137 bytes in pieces of 64, 64 and 9; 128 bytes in exactly two.
    EXPECT_EQ(gather(pieces(app(35, 125)) + pieces(app(36, 116)) + pieces(app(37, 0))),
              (std::vector<int>{35, 36, 37}));
    EXPECT_EQ(gather({kDataAvailable}, pieces(app(35, 9000), 4096) + pieces(app(36, 125))),
              (std::vector<int>{35, 36}));
}

TEST_F(BlockReaderTest, BulkRunGoesBackToTheInterruptPipe) {
    usb_.play({{.write = kRequest,
                .interrupt = {kDataAvailable, kDataAvailable},
                .bulk = {app(27, 2), app(35), kEmpty, app(35), app(12, 2), kEmpty}}});
    UsbLease lease(port_);
    BlockReader reader(lease, services_);
    EXPECT_EQ(reader.getBlocks(kRequest).size(), 4U);
    EXPECT_EQ(traced("Mode BULK"), 2);
    EXPECT_DOUBLE_EQ(host_.elapsed(), 0.5) << "empty blocks end a run without waiting";
}

TEST_F(BlockReaderTest, BulkRunWithoutItsEmptyBlockEndsWithItsTimeOut) {
    EXPECT_EQ(gather({kDataAvailable}, {app(27, 2)}), std::vector<int>{27});
    EXPECT_DOUBLE_EQ(host_.elapsed(), 1.0);
}

TEST_F(BlockReaderTest, DataAvailableInTheMiddleOfAnInterruptRunIsFollowed) {
    EXPECT_EQ(gather({app(255), kDataAvailable}, {app(248, 70), app(253, 60), kEmpty}),
              (std::vector<int>{255, 248, 253}));
}

TEST_F(BlockReaderTest, BlocksOfNoModeAreTracedAndSkipped) {
    EXPECT_EQ(
        gather({ScriptedUsb::packet(0, 6, {1, 2, 3, 4}), ScriptedUsb::packet(0, 300), app(35)}),
        std::vector<int>{35});
    EXPECT_EQ(traced("Mode Ind\xE9termin\xE9 pid: 6\r"), 1);
    EXPECT_EQ(traced("Mode Ind\xE9termin\xE9 pid: 300\r"), 1);
}

TEST_F(BlockReaderTest, AnEmptyBlockEndsAnInterruptRun) {
    EXPECT_EQ(gather({app(35), kEmpty, app(36)}), std::vector<int>{35});
}

TEST_F(BlockReaderTest, PaddingIsDropped) {
    Bytes padded = app(35, 10);
    padded.resize(64);
    EXPECT_EQ(gather({padded, app(36)}), (std::vector<int>{35, 36}));
}

TEST_F(BlockReaderTest, LyingSizesNeitherLoopNorFillTheMemory) {
    Bytes huge = app(35, 52);
    huge[11] = 0xFF;
    EXPECT_EQ(gather({huge, app(36)}), std::vector<int>{36}) << "4 GB";
    Bytes longer = app(35, 20);
    longer[8] = 50;
    EXPECT_EQ(gather({longer}), std::vector<int>{}) << "more than came";
    EXPECT_EQ(traced("Paquet incomplet"), 1);
}

TEST_F(BlockReaderTest, AUnitThatRepeatsNonsenseIsLeftAlone) {
    EXPECT_EQ(gather(Blocks(1000, ScriptedUsb::packet(0, 6))), std::vector<int>{});
    EXPECT_EQ(gather(Blocks(1000, kDataAvailable), Blocks(1000, kEmpty)), std::vector<int>{});
    EXPECT_LT(host_.traceText().size(), 10000U);
}

TEST_F(BlockReaderTest, AStopRequestEndsTheGathering) {
    usb_.play({{.write = kRequest, .interrupt = Blocks(100, app(35))}});
    int asked = 0;
    host_.onStopRequested = [&] { return ++asked > 3; };
    UsbLease lease(port_);
    BlockReader reader(lease, services_);
    EXPECT_EQ(reader.getBlocks(kRequest).size(), 3U);
}

TEST_F(BlockReaderTest, ARequestThatIsNotTakenGathersNothing) {
    usb_.refusals = 1;
    UsbLease lease(port_);
    BlockReader reader(lease, services_);
    EXPECT_TRUE(reader.getBlocks(kRequest).empty());
    EXPECT_DOUBLE_EQ(host_.elapsed(), 0.05);
}

}  // namespace
}  // namespace marlune
