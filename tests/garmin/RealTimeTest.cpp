// The unit's clock, its position, and the stream of positions.
#include <gtest/gtest.h>

#include <cstring>

#include "garmin/GarminRecords.h"

namespace marlune {
namespace {

const std::string kTags = "A100 D100 A600 D600 A700 D700 A800 D800";

Bytes doubleBytes(double value) {
    Bytes bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

// A D800 record of 44.99999999412416 N and E at 31/12/1989 12:00:00.
Bytes d800(std::uint8_t fix) {
    return join({Bytes(16, 0),
                 {fix, 0},
                 doubleBytes(43200),
                 doubleBytes(0.785398163397448),
                 doubleBytes(0.785398163397448),
                 Bytes(12, 0),
                 Bytes(4, 0),
                 {0, 0},
                 Bytes(4, 0)});
}
const std::string kPvtLine = "T;45;45;32873.5;0;";
const Step kStart = event("Startpvt|N;Trace tps réel - 01/06/2007 12:00:00");

class RealTimeTest : public testing::Test, protected Stage {
protected:
    explicit RealTimeTest(Line line = Line::serial) : Stage(line) {}

    void SetUp() override {
        connectGarmin(kTags);
        host.setNow(39234.5);
    }
    double GetTime(const Script& script) {
        double result = -1;
        play(script, [&] { result = control().GetTime(); });
        return result;
    }
    std::string getPosition(const Script& script) {
        std::string result;
        play(script, [&] { result = control().getPosition(); });
        return result;
    }
    void StartPvtData(const Script& script) {
        play(script, [this] { EXPECT_FALSE(control().StartPvtData()); });
    }
};

class EveryLineRealTimeTest : public RealTimeTest, public testing::WithParamInterface<Line> {
protected:
    EveryLineRealTimeTest() : RealTimeTest(GetParam()) {}
};
INSTANTIATE_TEST_SUITE_P(, EveryLineRealTimeTest, kEveryLine, lineName);

// What ends every run, whoever ended it.
const Script kEnd = {sends(10, {50, 0}), answers(6, {10, 0}), event("EndPvt"),
                     box(BoxIcon::information, "Transfert terminé.")};

TEST_F(RealTimeTest, TellsTheUnitsTime) {
    const Bytes time = {6, 15, 0xD7, 7, 23, 0, 4, 5};
    EXPECT_NEAR(GetTime({sends(10, {5, 0}), answers(6, {10, 0}), answers(14, time),
                         box(BoxIcon::none, "15/06/2007 23:04:05")}),
                39248.961169, 1e-6);
    EXPECT_EQ(GetTime({sends(10, {5, 0}), answers(14, time), protocolError(14)}), 0);
    EXPECT_EQ(GetTime({sends(10, {5, 0}), answers(6), protocolError(0)}), 0);
    EXPECT_EQ(GetTime({sends(10, {5, 0}), protocolError(0)}), 0);
    EXPECT_EQ(GetTime({sends(10, {5, 0}), answers(6), answers(14, {6, 15}), protocolError(14)}), 0)
        << "a record without a date";
}

TEST_F(RealTimeTest, TellsThePosition) {
    const Bytes position = join({doubleBytes(45.5), doubleBytes(-2.25)});
    EXPECT_EQ(getPosition({sends(10, {2, 0}), answers(6), answers(17, position)}),
              "01/06/2007 12:00:00 - Position du GPS: Latitude: 45.5 - Longitude: -2.25");
    EXPECT_EQ(getPosition({sends(10, {2, 0}), answers(17, position), protocolError(17)}), "");
    EXPECT_EQ(
        getPosition({sends(10, {2, 0}), answers(6), answers(17, {1, 2, 3}), protocolError(17)}),
        "");
}

TEST_P(EveryLineRealTimeTest, FollowsUntilTheHostStops) {
    events.when("PvtData", 3, [this] { control().StopPvtData(); });
    StartPvtData(Script{sends(10, {49, 0}), answers(6, {10, 0}), answers(51, d800(0)), kStart,
                        answers(51, d800(3)), event("PvtData|" + kPvtLine + "-1"),
                        answers(114, {1}), answers(51, d800(2)), event("PvtData|" + kPvtLine + "0"),
                        // Without a fix: the position before.
                        answers(51, d800(0)), event("PvtData|" + kPvtLine + "0")} +
                 kEnd);
    // The flag of the run before is of no matter, and neither is its first point.
    events.when("Startpvt", 1, [this] { control().StopPvtData(); });
    StartPvtData(Script{sends(10, {49, 0}), answers(6), answers(51, d800(3)), kStart,
                        event("PvtData|" + kPvtLine + "-1")} +
                 kEnd);
}

TEST_P(EveryLineRealTimeTest, ASilentUnitEndsTheRun) {
    StartPvtData(
        Script{sends(10, {49, 0}), answers(6), box(BoxIcon::critical, "Position non disponible")} +
        kEnd);
}

TEST_P(EveryLineRealTimeTest, ARecordThatIsCutShortIsTracedAndSkipped) {
    events.when("PvtData", 1, [this] { control().StopPvtData(); });
    StartPvtData(Script{sends(10, {49, 0}), answers(6), answers(51, {1, 2, 3}), kStart,
                        answers(51, d800(3)), event("PvtData|" + kPvtLine + "-1")} +
                 kEnd);
}

// The unit is told to stop before the connection goes, or it would talk into the next one; its
// answer is not waited for, and nothing is written any more.
TEST_P(EveryLineRealTimeTest, AHandlerMayDisconnectOrDestroy) {
    const Step point = event("PvtData|" + kPvtLine + "-1");
    const Step stop = sends(10, {50, 0});
    const Script start = {sends(10, {49, 0}), answers(6), answers(51, d800(3)), kStart};
    const Script end = {event("EndPvt"), box(BoxIcon::information, "Transfert terminé.")};
    events.when("Startpvt", 1, [this] { control().gpsDisconnect(); });
    StartPvtData(start + Script{stop, point} + end);

    SetUp();
    events.when("PvtData", 1, [this] {
        control().StopPvtData();
        control().gpsDisconnect();
    });
    StartPvtData(start + Script{point, stop} + end);

    SetUp();
    events.when("PvtData", 1, [this] { destroyControl(); });
    play(start + Script{point, stop} + end, [this] { control().StartPvtData(); });
}

}  // namespace
}  // namespace marlune
