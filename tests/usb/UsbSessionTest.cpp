#include <gtest/gtest.h>

#include <memory>

#include "support/ScriptedUsb.h"
#include "usb/UsbSession.h"

namespace marlune {
namespace {

using Bytes = ScriptedUsb::Bytes;

class UsbSessionTest : public testing::Test {
protected:
    UsbSessionTest() {
        usb_.answersSessions = false;
        port_.open();
    }

    FakeHost host_;
    ScriptedUsb* owned_ = new ScriptedUsb(host_);
    ScriptedUsb& usb_ = *owned_;
    UsbPort port_{std::unique_ptr<UsbDevice>(owned_)};
};

const Bytes kStart = {0, 0, 0, 0, 5, 0, 0, 0, 0, 0, 0, 0};
const Bytes kStarted = ScriptedUsb::packet(0, 6, {0x78, 0x56, 0x34, 0x12});

TEST_F(UsbSessionTest, StartsWhenTheNextBlockSaysSo) {
    struct Case {
        const char* what;
        std::vector<Bytes> answer;
        double delay;
        bool started;
    };
    const Case cases[] = {
        {"started", {kStarted}, 0.1, true},
        {"whatever the type: only the id's low byte counts",
         {ScriptedUsb::packet(20, 0x106)},
         0,
         true},
        {"too late", {kStarted}, 0.3, false},
        {"another id", {ScriptedUsb::packet(0, 7)}, 0, false},
        {"a short block", {{0, 0, 0, 0}}, 0, false},
        {"an empty block", {{}}, 0, false},
        {"not at all", {}, 0, false},
    };
    for (const Case& c : cases) {
        UsbLease lease(port_);
        usb_.play({{.write = kStart, .interrupt = c.answer, .delay = c.delay}});
        EXPECT_EQ(startSession(lease), c.started) << c.what;
        EXPECT_EQ(usb_.problems(), "") << c.what;
        host_.advance(1);
    }
}

TEST_F(UsbSessionTest, StaleInputIsDroppedFirst) {
    usb_.play(
        {{.interrupt = {ScriptedUsb::packet(20, 35)}}, {.write = kStart, .interrupt = {kStarted}}});
    UsbLease lease(port_);
    EXPECT_TRUE(startSession(lease));
}

TEST_F(UsbSessionTest, AWriteThatIsNotTakenIsNoSession) {
    usb_.refusals = 1;
    UsbLease lease(port_);
    EXPECT_FALSE(startSession(lease));
    EXPECT_DOUBLE_EQ(host_.elapsed(), 0.05) << "no read follows";
}

TEST_F(UsbSessionTest, ALateSecondAnswerIsSkipped) {
    usb_.play({{.interrupt = {kStarted, ScriptedUsb::packet(20, 14)}}});
    UsbLease lease(port_);
    const auto packet = readInterruptPacket(lease, 200);
    ASSERT_TRUE(packet);
    EXPECT_EQ(packet->GetPid(), 14);
    EXPECT_FALSE(readInterruptPacket(lease, 200));
    EXPECT_DOUBLE_EQ(host_.elapsed(), 0.2);

    usb_.play({{.interrupt = std::vector<Bytes>(100, kStarted)}});
    EXPECT_FALSE(readInterruptPacket(lease, 200)) << "repeated for ever";
}

TEST_F(UsbSessionTest, ALostLeaseTouchesNothing) {
    UsbLease lease(port_);
    port_.open();
    usb_.play({{.interrupt = {kStarted}}});
    EXPECT_FALSE(lease.holds());
    EXPECT_EQ(lease.writeBlock(kStart), 0);
    Bytes block(64);
    EXPECT_EQ(lease.readInterruptBlock(block, 1000), -1);
    EXPECT_EQ(lease.readBulkBlock(block, 1000), 0);
    EXPECT_FALSE(lease.reopen());
    EXPECT_DOUBLE_EQ(host_.elapsed(), 0) << "and waits for nothing";
    EXPECT_EQ(usb_.problems(), "");

    UsbLease fresh(port_);
    EXPECT_TRUE(fresh.reopen());
    EXPECT_TRUE(fresh.holds());
    EXPECT_EQ(usb_.openings, 3);
}

}  // namespace
}  // namespace marlune
