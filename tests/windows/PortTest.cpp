// The serial port of Windows on a line of which the test's script holds the other end: COM3 is the
// virtual Garmin receiver, COM4 a line that nobody speaks on.
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <vector>

#include "marlune/SystemHost.h"
#include "serial/SerialPort.h"

namespace marlune {
namespace {

constexpr char kLine[] = "baud=9600 parity=n data=8 stop=1";
// A request for the product data, which the receiver answers with two frames.
constexpr std::array<std::uint8_t, 6> kRequest = {16, 254, 0, 2, 16, 3};

class PortTest : public testing::Test {
protected:
    void read(std::size_t count) {
        bytes_.assign(count, 0);
        bytes_.resize(port_->read(bytes_));
    }

    SystemHost host_;
    std::unique_ptr<SerialPort> port_ = makeSystemSerialPort(host_);
    std::vector<std::uint8_t> bytes_;
};

// Silence after an answer ends a read: the whole of this one would be waited for seven minutes
// long, and the program is given five.
TEST_F(PortTest, AnAnswerIsReadUntilTheLineFallsSilent) {
    ASSERT_EQ(port_->open("\\\\.\\COM3", kLine, {2048, 1024}), 0);
    EXPECT_EQ(port_->write(kRequest), kRequest.size());
    read(4000);
    EXPECT_GT(bytes_.size(), 20U) << "the whole answer in one read";
    EXPECT_EQ(bytes_.at(0), 16);
}

TEST_F(PortTest, SilenceLastsOneSecondAndATenthPerByte) {
    ASSERT_EQ(port_->open("\\\\.\\COM4", kLine, {2048, 1024}), 0);
    COMMTIMEOUTS waits{};
    ASSERT_TRUE(GetCommTimeouts(reinterpret_cast<HANDLE>(port_->handle()), &waits));
    EXPECT_EQ(waits.ReadIntervalTimeout, 100U);
    EXPECT_EQ(waits.ReadTotalTimeoutMultiplier, 100U);
    EXPECT_EQ(waits.ReadTotalTimeoutConstant, 1000U);
    EXPECT_EQ(waits.WriteTotalTimeoutMultiplier, 0U);
    EXPECT_EQ(waits.WriteTotalTimeoutConstant, 0U);

    read(1);
    EXPECT_TRUE(bytes_.empty());
    EXPECT_FALSE(port_->isGone());
    port_->purge();
    port_->close();
    EXPECT_EQ(port_->handle(), -1);
    read(9);
    EXPECT_TRUE(bytes_.empty()) << "a closed port is silent";
}

TEST_F(PortTest, AnOpeningThatFailsHasTheSystemsError) {
    EXPECT_EQ(port_->open("\\\\.\\COM39", kLine, {}), 2);
    EXPECT_FALSE(port_->isOpen());
    // A file opens, but is no line: the first setting fails, and the handle only seems open.
    EXPECT_NE(port_->open("C:\\windows\\system.ini", kLine, {}), 0);
    EXPECT_TRUE(port_->isOpen());
    EXPECT_TRUE(port_->isGone());
    EXPECT_EQ(port_->write(kRequest), 0U);
    port_->close();
    EXPECT_FALSE(port_->isOpen());
}

TEST_F(PortTest, SettingsThatAreNoneFail) {
    EXPECT_NE(port_->open("\\\\.\\COM4", "nonsense", {}), 0);
    EXPECT_TRUE(port_->isGone());
}

}  // namespace
}  // namespace marlune
