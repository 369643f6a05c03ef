// The system's serial port on a pseudo terminal. No test waits for a time-out to pass: either the
// data is there, or the host's stop ends the wait. The question whether to stop is asked whenever
// the port is about to wait, so it is also where the other end acts.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>

#include "serial/SerialPort.h"
#include "support/FakeHost.h"
#include "support/OrdinaryUser_posix.h"
#include "support/Pty.h"

namespace marlune {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr const char* kGarmin = "baud=9600 parity=n data=8 stop=1";

class SystemSerialPortTest : public testing::Test {
protected:
    SystemSerialPortTest()
        : probe_(::open(pty_.slavePath().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {}
    ~SystemSerialPortTest() override { ::close(probe_); }

    std::int32_t open(const std::string& settings = kGarmin) {
        return port_->open(pty_.slavePath(), settings, {});
    }
    Bytes read(std::size_t count) {
        Bytes bytes(count);
        bytes.resize(port_->read(bytes));
        return bytes;
    }
    // Sends to the port and waits until it stands in the terminal's queue.
    void deliver(const Bytes& bytes) {
        ASSERT_EQ(pty_.write(bytes), bytes.size());
        pollfd wait{probe_, POLLIN, 0};
        ASSERT_EQ(::poll(&wait, 1, Pty::kPatienceMilliseconds), 1);
    }
    [[nodiscard]] int waiting() const {
        int count = -1;
        (void)::ioctl(probe_, FIONREAD, &count);
        return count;
    }
    [[nodiscard]] bool exclusive() const {
        int on = -1;
        (void)::ioctl(probe_, TIOCGEXCL, &on);
        return on == 1;
    }

    Pty pty_;
    int probe_;  // a second look at the port's end, from before it became exclusive
    FakeHost host_;
    std::unique_ptr<SerialPort> port_ = makeSystemSerialPort(host_);
};

TEST_F(SystemSerialPortTest, AppliesTheSettingsOfEveryFamilyAsARawLine) {
    const std::vector<std::tuple<std::string, speed_t, bool>> cases = {
        {kGarmin, B9600, false},
        {"baud=4800 parity=n data=8 stop=2", B4800, true},
        {"baud=38400 parity=n data=8 stop=2", B38400, true},
        {"baud=19200 parity=n data=8 stop=1", B19200, false}};
    for (const auto& [settings, rate, twoStopBits] : cases) {
        termios line{};
        ASSERT_EQ(::tcgetattr(probe_, &line), 0);
        line.c_lflag |= ICANON | ECHO | ISIG;
        line.c_iflag |= ICRNL | IXON | IXOFF | ISTRIP;
        line.c_oflag |= OPOST | ONLCR;
        line.c_cflag |= CRTSCTS;
        ASSERT_EQ(::tcsetattr(probe_, TCSANOW, &line), 0);

        EXPECT_EQ(open(settings), 0) << settings;
        ASSERT_EQ(::tcgetattr(probe_, &line), 0);
        EXPECT_EQ(::cfgetospeed(&line), rate) << settings;
        EXPECT_EQ(::cfgetispeed(&line), rate) << settings;
        EXPECT_EQ((line.c_cflag & CSTOPB) != 0, twoStopBits) << settings;
        EXPECT_EQ(line.c_cflag & (CSIZE | PARENB | CRTSCTS | CLOCAL | CREAD),
                  tcflag_t{CS8 | CLOCAL | CREAD});
        EXPECT_EQ(line.c_lflag | line.c_iflag | line.c_oflag, 0U);
        port_->close();
    }
}

TEST_F(SystemSerialPortTest, KeepsItsDeviceForItself) {
    ASSERT_EQ(open(), 0);
    const auto second = makeSystemSerialPort(host_);
    EXPECT_EQ(second->open(pty_.slavePath(), kGarmin, {}), EBUSY);
    EXPECT_EQ(second->handle(), -1);
    EXPECT_TRUE(exclusive()) << "the refused opening leaves the first one's hold";
    EXPECT_EQ(open("baud=4800 parity=n data=8 stop=1"), 0) << "the holder itself may reopen";
    port_->close();
    EXPECT_EQ(port_->handle(), -1);
    EXPECT_FALSE(exclusive());
    EXPECT_EQ(second->open(pty_.slavePath(), kGarmin, {}), 0);
}

TEST_F(SystemSerialPortTest, RefusesWhatIsNoTerminalWithTheSystemsError) {
    const TempFolder folder;
    const std::string secret = folder.write("secret", "");
    ASSERT_EQ(::chmod(secret.c_str(), 0), 0);
    for (const auto& [device, error] : {std::pair{std::string(), ENOENT},
                                        {folder.path() / "missing", ENOENT},
                                        {folder.path(), EISDIR},
                                        {folder.write("file", "content"), ENOTTY},
                                        {"/dev/null", ENOTTY}}) {
        EXPECT_EQ(port_->open(device, kGarmin, {}), error) << device;
        EXPECT_FALSE(port_->isOpen());
        EXPECT_TRUE(port_->isGone());
    }
    EXPECT_EQ(folder.read("file"), "content");

    const OrdinaryUser user;
    EXPECT_EQ(port_->open(secret, kGarmin, {}), EACCES);
}

TEST_F(SystemSerialPortTest, NeverBecomesTheControllingTerminal) {
    // A process that leads a session and has no terminal would get the first one that it opens.
    const auto openAlone = [this] {
        ::setsid();
        const bool opened = open() == 0;
        ::_exit(opened && ::open("/dev/tty", O_RDWR) < 0 && errno == ENXIO ? 0 : 1);
    };
    EXPECT_EXIT(openAlone(), testing::ExitedWithCode(0), "");
}

TEST_F(SystemSerialPortTest, KeepsInputThatWaitsAndReadsAheadWhatTheKernelHas) {
    deliver({1, 2, 3});
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(read(1), Bytes{1});
    EXPECT_EQ(waiting(), 0);
    host_.stop = true;
    EXPECT_EQ(read(5), (Bytes{2, 3})) << "a stop ends the wait for more, not the reading";
    EXPECT_EQ(read(1), Bytes{});
}

TEST_F(SystemSerialPortTest, APartialReadGoesOnWithWhatArrivesMeanwhile) {
    ASSERT_EQ(open(), 0);
    int asked = 0;
    host_.onStopRequested = [&] {
        if (++asked == 1) {
            deliver({2, 3});
        }
        return asked > 10;
    };
    Bytes arrived;
    // A machine that stalls makes the line look silent: then once more.
    for (int tries = 0; arrived.size() < 3 && tries < 50; ++tries) {
        asked = 0;
        port_->purge();
        deliver({1});
        arrived = read(3);
    }
    EXPECT_EQ(arrived, (Bytes{1, 2, 3}));
    EXPECT_EQ(host_.elapsed(), 0) << "the port waits on the system's clock, not on the host's";
}

TEST_F(SystemSerialPortTest, PurgeEmptiesAllInputButKeepsWhatWasWritten) {
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(port_->write(Bytes{1, 2}), 2U);
    deliver({1, 2});
    EXPECT_EQ(read(1), Bytes{1});
    deliver({3});
    port_->purge();
    EXPECT_EQ(waiting(), 0);
    deliver({4});
    EXPECT_EQ(read(1), Bytes{4});
    EXPECT_EQ(pty_.read(2), (Bytes{1, 2}));
}

TEST_F(SystemSerialPortTest, SettlingHearsTheDeviceOut) {
    ASSERT_EQ(open(), 0);
    deliver({1});
    port_->settle();
    EXPECT_EQ(waiting(), 1) << "nothing was asked on this connection";

    int waits = 0;
    host_.onStopRequested = [&] {
        EXPECT_EQ(waiting(), 0);
        deliver({3});
        return ++waits == 2;
    };
    // A machine that stalls makes the line look quiet: then once more.
    for (int tries = 0; waits != 2 && tries < 50; ++tries) {
        waits = 0;
        EXPECT_EQ(port_->write(Bytes{2}), 1U);
        port_->settle();
    }
    EXPECT_EQ(waits, 2);
}

// A device that never pauses must not hold up who wants to disconnect.
TEST_F(SystemSerialPortTest, SettlingEndsAlthoughTheDeviceGoesOn) {
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(port_->write(Bytes{2}), 1U);
    int waits = 0;
    host_.onStopRequested = [&] {
        deliver({3});
        return ++waits == 100'000;
    };
    port_->settle();
    EXPECT_LT(waits, 100'000);
}

TEST_F(SystemSerialPortTest, UnpluggingDuringAReadEndsItAndEveryLaterOne) {
    ASSERT_EQ(open(), 0);
    host_.onStopRequested = [&] {
        EXPECT_GE(pty_.masterDescriptor(), 0) << "nothing is waited for once the device has gone";
        pty_.hangUp();
        return false;
    };
    EXPECT_EQ(read(5), Bytes{});
    EXPECT_TRUE(port_->isGone());
    EXPECT_EQ(read(1), Bytes{});
    EXPECT_EQ(port_->write(Bytes{1}), 0U);
    EXPECT_TRUE(port_->isOpen()) << "until it is closed";
    port_->close();
    EXPECT_FALSE(port_->isOpen());
}

TEST_F(SystemSerialPortTest, DeliversWhatItHoldsOfAGoneDevice) {
    ASSERT_EQ(open(), 0);
    deliver({1, 2, 3});
    EXPECT_EQ(read(1), Bytes{1});
    pty_.hangUp();
    EXPECT_EQ(port_->write(Bytes{9}), 0U);
    EXPECT_FALSE(port_->isGone());
    EXPECT_EQ(read(2), (Bytes{2, 3}));
    EXPECT_TRUE(port_->isGone());
}

TEST_F(SystemSerialPortTest, WritesEverythingHoweverLittleTheSystemTakes) {
    ASSERT_EQ(open(), 0);
    Bytes sent(100'000);
    for (std::size_t i = 0; i < sent.size(); ++i) {
        sent[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
    }
    Bytes received;
    int waits = 0;
    const auto drain = [&] {
        const Bytes chunk = pty_.readArrived();
        received.insert(received.end(), chunk.begin(), chunk.end());
    };
    host_.onStopRequested = [&] {
        ++waits;
        drain();
        return false;
    };
    EXPECT_EQ(port_->write(sent), sent.size());
    EXPECT_GT(waits, 1);
    drain();
    const Bytes rest = pty_.read(sent.size() - received.size());
    received.insert(received.end(), rest.begin(), rest.end());
    EXPECT_EQ(received, sent);
}

TEST_F(SystemSerialPortTest, AStopOrAnUnpluggingEndsAWriteThatNobodyReads) {
    ASSERT_EQ(open(), 0);
    const Bytes block(100'000, 'x');
    host_.stop = true;
    const std::size_t taken = port_->write(block);
    EXPECT_GT(taken, 0U);
    EXPECT_LT(taken, block.size());
    host_.onStopRequested = [&] {
        pty_.hangUp();
        return false;
    };
    // Not nothing: the kernel may meanwhile have passed on some of what filled the line.
    EXPECT_LT(port_->write(block), block.size());
    EXPECT_TRUE(port_->isGone());
}

TEST_F(SystemSerialPortTest, ARefusedSettingClosesTheDeviceButKeepsTheHandle) {
    // A pseudo terminal carries no parity and eight bits only.
    for (const char* settings : {"baud=9600 parity=e data=8 stop=1", "baud=9600 data=7",
                                 "baud=fast parity=n data=8 stop=1"}) {
        EXPECT_EQ(open(settings), EINVAL) << settings;
        EXPECT_TRUE(port_->isOpen());
        EXPECT_TRUE(port_->isGone());
        EXPECT_EQ(read(1), Bytes{});
        EXPECT_EQ(port_->write(Bytes{1}), 0U);
        port_->purge();
        EXPECT_FALSE(exclusive());
        EXPECT_EQ(makeSystemSerialPort(host_)->open(pty_.slavePath(), kGarmin, {}), 0);
        port_->close();
        EXPECT_EQ(port_->handle(), -1);
    }
}

}  // namespace
}  // namespace marlune
