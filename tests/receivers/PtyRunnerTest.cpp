#include <gmock/gmock.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <filesystem>
#include <system_error>

#include "receivers/EchoReceiver.h"
#include "receivers/HostEnd.h"
#include "receivers/PtyRunner.h"
#include "support/TempFolder.h"

namespace marlune::receivers {
namespace {

TEST(PtyRunner, SurvivesClosingAndReopeningAndTellsWhatItHolds) {
    PtyRunner runner(std::make_unique<EchoReceiver>(), {});
    runner.start();
    for (const char* text : {"ab", "c"}) {
        const HostEnd host(runner.path());
        ASSERT_GE(host.fd(), 0);
        host.write(text);
        const std::string answer = host.read(2 * std::string(text).size());
        EXPECT_EQ(answer[0], text[0]);
    }
    EXPECT_THAT(runner.lines(), testing::ElementsAre("heard abc"));
}

TEST(PtyLine, WhatAFormerHostLeftUnreadIsGone) {
    PtyLine line(9600, "");
    const std::string text = "stale";
    const std::vector<std::uint8_t> stale(text.begin(), text.end());
    std::vector<std::uint8_t> heard;
    EXPECT_EQ(line.write(stale), stale.size()) << "nobody listens: lost, not kept back";
    {
        const HostEnd former(line.path());
        line.read(heard);
        ASSERT_EQ(line.write(stale), stale.size());
        ::ioctl(former.fd(), TIOCEXCL);
        EXPECT_EQ(former.read(1), "s");
    }
    const HostEnd host(line.path());
    line.read(heard);
    int waiting = -1;
    ::ioctl(host.fd(), FIONREAD, &waiting);
    EXPECT_EQ(waiting, 0);
    int exclusive = -1;
    ::ioctl(host.fd(), TIOCGEXCL, &exclusive);
    EXPECT_EQ(exclusive, 0);
}

TEST(PtyLine, DoesNotMistakeTheSpeedOfAHostThatHasComeBackAtAnother) {
    PtyLine line(9600, "");
    std::vector<std::uint8_t> heard;
    HostEnd(line.path()).write("x");
    line.noteOpenings();  // noticed before its bytes were read
    const HostEnd host(line.path(), B38400);
    EXPECT_EQ(line.read(heard), 1U);
    EXPECT_TRUE(line.mayHaveRead(9600));
    host.write("y");
    EXPECT_EQ(line.read(heard), 1U);
    EXPECT_FALSE(line.mayHaveRead(9600));
    EXPECT_TRUE(line.mayHaveRead(38400));
}

TEST(PtyRunner, TakesAnySpeedUntilItChangesItsOwn) {
    PtyRunner runner(std::make_unique<EchoReceiver>(), {});
    runner.start();
    const HostEnd slow(runner.path(), B4800);
    slow.write("a");
    EXPECT_EQ(slow.read(2), "aa");
    slow.write("9");
    (void)slow.read(2);
    slow.write("bbbb");
    EXPECT_NE(slow.read(8), "bbbbbbbb");
}

TEST(PtyRunner, BytesAtTheWrongSpeedAreNoise) {
    PtyRunner runner(std::make_unique<EchoReceiver>(), {true, ""});
    runner.start();
    const HostEnd fast(runner.path(), B38400);
    fast.write("9999");
    const std::string noise = fast.read(8);
    EXPECT_EQ(noise.size(), 8U);
    EXPECT_NE(noise, "99999999");
    const HostEnd right(runner.path(), B9600);
    right.write("q");
    EXPECT_EQ(right.read(2), "qq");
}

TEST(PtyRunner, AHangUpEndsTheLineAfterWhatWasSaid) {
    PtyRunner runner(std::make_unique<EchoReceiver>(Faults({"hangup:packet=2"})), {});
    runner.start();
    const HostEnd host(runner.path());
    host.write("ab");
    EXPECT_EQ(host.read(3), "aa") << "and then the end of the line, not a time-out";
}

// The program's own test tells the rest about its link.
TEST(PtyRunner, ReplacesAnOldLinkAndNothingElse) {
    const TempFolder folder;
    const std::string link = folder.path() / "gps";
    std::filesystem::create_symlink("/nowhere", link);
    const PtyRunner runner(std::make_unique<EchoReceiver>(), PtyRunner::Options{false, link});
    EXPECT_EQ(std::filesystem::read_symlink(link), runner.path());
    const PtyRunner::Options taken = {false, folder.path()};
    EXPECT_THROW(PtyRunner(std::make_unique<EchoReceiver>(), taken), std::system_error);
}

TEST(PtyRunner, PacesWithoutLosingBytes) {
    auto receiver = std::make_unique<EchoReceiver>();
    receiver->wakeAt(0);
    PtyRunner runner(std::move(receiver), PtyRunner::Options{true, ""});
    const HostEnd host(runner.path());
    runner.start();
    EXPECT_EQ(host.read(1), "t") << "due before anything was heard";
    host.write(std::string(50, 'p'));
    EXPECT_EQ(host.read(100), std::string(100, 'p'));
}

}  // namespace
}  // namespace marlune::receivers
