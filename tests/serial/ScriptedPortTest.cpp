// The scripted port carries most tests of the protocols, so what it says of a script, and how it
// spends the fake clock, is tested here.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "support/ScriptedPort.h"

namespace marlune {
namespace {

using Bytes = ScriptedPort::Bytes;
using testing::HasSubstr;

class ScriptedPortTest : public testing::Test {
protected:
    ScriptedPortTest() { port_.open("/fake/COM1", "baud=9600 parity=n data=8 stop=1", {}); }

    Bytes read(std::size_t count) {
        Bytes bytes(count);
        bytes.resize(port_.read(bytes));
        return bytes;
    }
    void write(const Bytes& bytes) { EXPECT_EQ(port_.write(bytes), bytes.size()); }

    FakeHost host_;
    ScriptedPort port_{host_};
};

TEST_F(ScriptedPortTest, AnswersATurnHoweverItIsCutIntoWrites) {
    port_.play({{.write = {1, 2, 3}, .answer = {10}}, {.write = {4}, .answer = {11, 12}}});
    write({1, 2});
    EXPECT_THAT(port_.problems(), HasSubstr("only the beginning of a turn was written"));
    write({3, 4});
    EXPECT_EQ(read(3), (Bytes{10, 11, 12}));
    EXPECT_EQ(host_.elapsed(), 0);
    EXPECT_EQ(port_.problems(), "");
}

TEST_F(ScriptedPortTest, ReportsWhatDiffersAndWhatIsMissing) {
    port_.play({{.write = {'$', 0}}});
    write({'$', 1});
    EXPECT_THAT(port_.problems(), HasSubstr("written: \"$\\01\" expected: \"$\\00\""));
    EXPECT_THAT(port_.problems(), HasSubstr("never written"));
    write({'$', 0});
    write({7});
    EXPECT_THAT(port_.problems(), HasSubstr("after the last turn: \"\\07\""));
}

TEST_F(ScriptedPortTest, SilenceLastsAsLongAsOnALine) {
    EXPECT_EQ(read(1), Bytes{});
    EXPECT_DOUBLE_EQ(host_.elapsed(), 1.1);
    EXPECT_EQ(read(10), Bytes{});
    EXPECT_DOUBLE_EQ(host_.elapsed(), 3.1);
    port_.play({{.answer = {1}, .delay = 1.0}, {.answer = {2}, .delay = 0.2}});
    EXPECT_EQ(read(2), Bytes{1}) << "the gap after the first byte is too long";
    EXPECT_DOUBLE_EQ(host_.elapsed(), 4.2);
    EXPECT_EQ(read(1), Bytes{2});
    EXPECT_DOUBLE_EQ(host_.elapsed(), 4.3);
}

TEST_F(ScriptedPortTest, PurgeKeepsWhatIsStillOnItsWay) {
    port_.play({{.answer = {1}}, {.answer = {2}, .delay = 0.5}});
    port_.purge();
    EXPECT_EQ(read(1), Bytes{2});
}

TEST(FakeHostClock, MovesOnlyWhenSomebodyWaits) {
    FakeHost host;
    const double start = host.secondsClock();
    for (int i = 0; i < 10; ++i) {
        host.pause(0.1);
    }
    EXPECT_EQ(host.secondsClock(), start + 1.0);
    EXPECT_EQ(host.dateText(host.now()), "01/06/2007 12:00:01");
    host.stop = true;
    host.pause(5);
    EXPECT_EQ(host.elapsed(), 1.0);
}

}  // namespace
}  // namespace marlune
