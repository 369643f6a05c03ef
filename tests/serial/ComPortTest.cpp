#include <gtest/gtest.h>

#include <memory>

#include "serial/ComPort.h"
#include "support/ScriptedPort.h"

namespace marlune {
namespace {

using Bytes = ScriptedPort::Bytes;

class ComPortTest : public testing::Test {
protected:
    ComPortTest() {
        port_->setNumber(7);
        port_->setLine("baud=4800 parity=n data=8 stop=2", {2048, 512});
    }

    FakeHost host_;
    ScriptedPort* line_ = new ScriptedPort(host_);
    std::unique_ptr<ComPort> port_ =
        std::make_unique<ComPort>(host_, std::unique_ptr<SerialPort>(line_));
};

TEST_F(ComPortTest, OpensTheDeviceOfItsNumberWithTheLastSettings) {
    host_.ports[7] = "/dev/other";
    EXPECT_EQ(port_->name(), "\\\\.\\COM7");
    EXPECT_EQ(port_->open(), 0);
    port_->setLine("baud=9600 parity=n data=8 stop=1");
    EXPECT_EQ(port_->open(), 0);
    ASSERT_EQ(line_->openings.size(), 2U);
    EXPECT_EQ(line_->openings[0].device, "/dev/other");
    EXPECT_EQ(line_->openings[0].settings, "baud=4800 parity=n data=8 stop=2");
    EXPECT_EQ(line_->openings[1].settings, "baud=9600 parity=n data=8 stop=1");
    EXPECT_EQ(line_->openings[1].queues.input, 2048) << "settings alone keep the queues";
    EXPECT_EQ(line_->openings[1].queues.output, 512);
}

TEST_F(ComPortTest, AFailedSettingsStepIsSilentAndStillCountsAsOpen) {
    line_->settingsError = 22;
    EXPECT_EQ(port_->open(), 22);
    EXPECT_TRUE(port_->isOpen());
    EXPECT_TRUE(host_.boxes.empty());
    PortLease lease(*port_);
    EXPECT_EQ(lease.readByte(), 0);
    EXPECT_EQ(host_.elapsed(), 0);
    port_->close();
    EXPECT_FALSE(port_->isOpen());
    EXPECT_EQ(port_->handle(), -1);
}

TEST_F(ComPortTest, ReadsFillUpWithZeros) {
    port_->open();
    PortLease lease(*port_);
    EXPECT_EQ(lease.read(3), Bytes{0}) << "nothing came";
    line_->arrive(Bytes{4});
    EXPECT_EQ(lease.read(3), (Bytes{4, 0, 0}));
    line_->arrive(Bytes{5});
    Bytes arrived(3, 99);
    EXPECT_EQ(lease.readArrived(arrived), 1U);
    EXPECT_EQ(arrived[1], 99) << "only what arrived is written";
}

TEST_F(ComPortTest, ALostLeaseTouchesNothing) {
    port_->open();
    PortLease lease(*port_);
    port_->close();
    port_->open();
    line_->arrive(Bytes{1});
    EXPECT_FALSE(lease.holds());
    EXPECT_TRUE(lease.isGone());
    EXPECT_EQ(lease.readByte(), 0);
    EXPECT_EQ(lease.write(Bytes{1}), 0U);
    lease.ResetComBuffers();
    EXPECT_EQ(lease.reopen("baud=38400 parity=n data=8 stop=1"), 0);
    EXPECT_EQ(line_->purges, 0);
    EXPECT_EQ(line_->openings.size(), 2U);
    EXPECT_EQ(host_.elapsed(), 0);
    EXPECT_EQ(PortLease(*port_).readByte(), 1);
}

TEST_F(ComPortTest, ReopeningKeepsTheLeaseThatAskedForIt) {
    port_->open();
    PortLease lease(*port_);
    PortLease other(*port_);
    EXPECT_EQ(lease.reopen("baud=38400 parity=n data=8 stop=1"), 0);
    EXPECT_TRUE(lease.holds());
    EXPECT_FALSE(other.holds());
    EXPECT_EQ(line_->openings.back().settings, "baud=38400 parity=n data=8 stop=1");
}

}  // namespace
}  // namespace marlune
