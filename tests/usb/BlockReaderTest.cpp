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

TEST_F(BlockReaderTest, GathersFromEitherPipe) {
    Bytes padded = app(35, 10);
    padded.resize(64);
    const struct {
        const char* what;
        Blocks interrupt;
        Blocks bulk;
        std::vector<int> ids;
        double seconds;  // what the silence at the end takes, and nothing else
    } cases[] = {
        {"one pipe", {app(27, 2), app(35), app(12, 2)}, {}, {27, 35, 12}, 0.5},
        {"nothing", {}, {}, {}, 0.5},
        {"137 bytes in 64, 64 and 9; 128 in two",
         pieces(app(35, 125)) + pieces(app(36, 116)) + pieces(app(37, 0)),
         {},
         {35, 36, 37},
         0.5},
        {"a header in pieces", {kDataAvailable}, pieces(app(35, 30), 5), {35}, 1.0},
        {"large blocks", {kDataAvailable}, pieces(app(35, 9000), 4096), {35}, 1.0},
        {"a bulk run goes back to the interrupt pipe",
         {kDataAvailable, kDataAvailable},
         {app(27, 2), app(35), kEmpty, app(35), app(12, 2), kEmpty},
         {27, 35, 35, 12},
         0.5},
        {"data in the middle of an interrupt run",
         {app(255), kDataAvailable},
         {app(248, 70), app(253, 60), kEmpty},
         {255, 248, 253},
         0.5},
        {"padding is dropped", {padded, app(36)}, {}, {35, 36}, 0.5},
        {"an empty block ends an interrupt run, whatever follows",
         {app(35), kEmpty, app(36)},
         {},
         {35},
         0},
    };
    for (const auto& c : cases) {
        const double before = host_.elapsed();
        EXPECT_EQ(gather(c.interrupt, c.bulk), c.ids) << c.what;
        EXPECT_NEAR(host_.elapsed() - before, c.seconds, 1e-9) << c.what;
    }
}

TEST_F(BlockReaderTest, TracesTheModeAndTheFirstBlock) {
    gather({app(27, 2), app(35), app(12, 2)});
    EXPECT_EQ(traced("GetBlocks: 14 - 20 0 0 0 27"), 1);
    EXPECT_EQ(traced("GetBlocks: "), 1);
    EXPECT_EQ(traced("Mode Interrupt"), 1);
    EXPECT_EQ(traced("Mode BULK"), 0);
    gather({kDataAvailable, kDataAvailable}, {app(35), kEmpty, app(12, 2), kEmpty});
    EXPECT_EQ(traced("Mode BULK"), 2);
}

TEST_F(BlockReaderTest, BlocksOfNoModeAreTracedAndSkipped) {
    EXPECT_EQ(
        gather({ScriptedUsb::packet(0, 6, {1, 2, 3, 4}), ScriptedUsb::packet(0, 300), app(35)}),
        std::vector<int>{35});
    EXPECT_EQ(traced("Mode Ind\xE9termin\xE9 pid: 6\r"), 1);
    EXPECT_EQ(traced("Mode Ind\xE9termin\xE9 pid: 300\r"), 1);
}

TEST_F(BlockReaderTest, LyingSizesNeitherLoopNorFillTheMemory) {
    Bytes huge = app(35, 52);
    huge[11] = 0xFF;
    EXPECT_EQ(gather({huge, app(36)}), std::vector<int>{36}) << "4 GB";
    Bytes longer = app(35, 20);
    longer[8] = 50;
    EXPECT_EQ(gather({longer}), std::vector<int>{}) << "more than came";
    EXPECT_EQ(traced("Paquet incomplet"), 1);
    EXPECT_EQ(gather({longer, app(36), app(37)}), (std::vector<int>{36, 37}));
    EXPECT_EQ(gather({kDataAvailable}, {longer, app(36), longer, app(37), kEmpty}),
              (std::vector<int>{36, 37}));
    EXPECT_EQ(gather({longer, kDataAvailable}, {app(36), kEmpty}), std::vector<int>{36});
    EXPECT_EQ(traced("Paquet incomplet"), 5);
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
