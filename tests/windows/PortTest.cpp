// The serial port of Windows on a line of which the test's script holds the other end: COM3 is the
// virtual Garmin receiver, COM4 a line that nobody speaks on.
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <vector>

#include "marlune/SystemHost.h"
#include "serial/SerialPort.h"

namespace marlune {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr char kLine[] = "baud=9600 parity=n data=8 stop=1";
// A request for the product data, which the receiver answers with two frames.
constexpr std::array<std::uint8_t, 6> kRequest = {16, 254, 0, 2, 16, 3};

class PortTest : public testing::Test {
protected:
    // The time that a read of that many bytes takes, and what it brings.
    milliseconds read(std::size_t count) {
        bytes_.assign(count, 0);
        const auto start = steady_clock::now();
        bytes_.resize(port_->read(bytes_));
        return std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
    }

    SystemHost host_;
    std::unique_ptr<SerialPort> port_ = makeSystemSerialPort(host_);
    std::vector<std::uint8_t> bytes_;
};

TEST_F(PortTest, GarminAnswersWithinTheTimeBetweenBytes) {
    ASSERT_EQ(port_->open("\\\\.\\COM3", kLine, {2048, 1024}), 0);
    EXPECT_EQ(port_->write(kRequest), kRequest.size());
    const milliseconds taken = read(4000);
    EXPECT_GT(bytes_.size(), 20U) << "the whole answer in one read";
    EXPECT_EQ(bytes_[0], 16);
    EXPECT_GE(taken, milliseconds(95)) << "100 ms of silence end it";
    EXPECT_LT(taken, milliseconds(5000)) << "and not the 401 s of a silent line";
}

TEST_F(PortTest, SilenceLastsOneSecondAndATenthPerByte) {
    ASSERT_EQ(port_->open("\\\\.\\COM4", kLine, {2048, 1024}), 0);
    for (const int count : {1, 5}) {
        const milliseconds taken = read(static_cast<std::size_t>(count));
        EXPECT_TRUE(bytes_.empty());
        EXPECT_GE(taken, milliseconds(1000 + 100 * count - 20));
        EXPECT_LT(taken, milliseconds(3000));
    }
    EXPECT_FALSE(port_->isGone());
    port_->purge();
    port_->close();
    EXPECT_EQ(port_->handle(), -1);
    EXPECT_LT(read(9), milliseconds(500)) << "a closed port is silent at once";
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
