#include <gmock/gmock.h>

#include <stdexcept>

#include "receivers/EchoReceiver.h"
#include "receivers/Faults.h"

namespace marlune::receivers {
namespace {

std::string echo(const std::vector<std::string>& faults, std::string_view heard) {
    EchoReceiver receiver{Faults(faults)};
    receiver.hear(std::vector<std::uint8_t>(heard.begin(), heard.end()), 0);
    const std::vector<std::uint8_t> said = receiver.takeOutput();
    return {said.begin(), said.end()};
}

TEST(Faults, StrikeThePacketOrByteTheyName) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{}, "aabbccbb"},
        {{"drop:at=3"}, "aabccbb"},
        {{"double:at=1"}, "aaabbccbb"},
        {{"drop:at=1,way=heard"}, "bbccbb"},
        {{"double:at=1,way=heard", "drop:at=8"}, "aaaabbcbb"},
        {{"silence:packet=3"}, "aabb"},
        {{"silence:packet=2,for=2"}, "aabb"},
        {{"silence:packet=2,of=b,for=1"}, "aabbcc"},
        {{"refuse:packet=2"}, "aa-ccbb"},
        {{"refuse:packet=1,of=b,for=2"}, "aa--bb"},
        {{"unknown:packet=1,of=c"}, "aabb?ccbb"},
        {{"short:packet=2,keep=0"}, "aaccbb"},
        {{"short:packet=3"}, "aabbcbb"},
        {{"short:packet=3,keep=99"}, "aabbccbb"},
        {{"hangup:packet=4"}, "aabbcc"},
        {{"unknown:packet=2", "short:packet=2,keep=1"}, "aa?bccbb"},
    };
    for (const auto& [faults, said] : cases) {
        EXPECT_EQ(echo(faults, "abcb"), said) << testing::PrintToString(faults);
    }
}

TEST(Faults, GarbleChangesOnlyTheByteAndRepeatably) {
    const std::string once = echo({"garble:at=2"}, "ab");
    ASSERT_EQ(once.size(), 4U);
    EXPECT_NE(once[1], 'a');
    EXPECT_EQ(once[0], 'a');
    EXPECT_EQ(once.substr(2), "bb");
    EXPECT_EQ(once, echo({"garble:at=2"}, "ab"));
}

TEST(Faults, ChanceFollowsTheSeedAndTheProbability) {
    const std::string heard(10000, 'x');
    const std::string first = echo({"drop:p=0.1", "seed=5"}, heard);
    EXPECT_EQ(first.size(), echo({"drop:p=0.1", "seed=5"}, heard).size());
    EXPECT_NE(first.size(), echo({"drop:p=0.1", "seed=6"}, heard).size());
    EXPECT_NEAR(static_cast<double>(first.size()), 18000, 200);
    EXPECT_EQ(echo({"drop:p=1"}, heard), "");
}

TEST(Faults, AHungUpReceiverIsDeafAndHasNoDeadline) {
    EchoReceiver receiver{Faults({"hangup:packet=1"})};
    receiver.wakeAt(5);
    EXPECT_EQ(receiver.nextDeadline(), 5);
    receiver.hear(std::vector<std::uint8_t>{'a'}, 0);
    EXPECT_TRUE(receiver.hungUp());
    EXPECT_EQ(receiver.nextDeadline(), std::nullopt);
    receiver.elapse(6);
    EXPECT_TRUE(receiver.takeOutput().empty());
}

TEST(Faults, UnreadableTextsAreNamed) {
    for (const char* text :
         {"", "nonsense", "drop", "drop:", "drop:at=0", "drop:at=x", "drop:at=1,p=0.5", "drop:p=2",
          "drop:p=nan", "drop:packet=1", "drop:at=1,way=up", "silence", "silence:of=35",
          "silence:packet=1,keep=2", "short:packet=1,keep=-1", "hangup:packet=1,for=2",
          "refuse:packet=1,of=", "seed=x", "seed="}) {
        try {
            const Faults faults({text});
            ADD_FAILURE() << text << " was accepted";
        } catch (const std::invalid_argument& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(std::string("\"") + text + "\""));
        }
    }
}

}  // namespace
}  // namespace marlune::receivers
