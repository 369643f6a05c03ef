// Frames, and their exchange over a scripted line.
#include <gtest/gtest.h>

#include <array>

#include "base/RunTimeError.h"
#include "garmin/Identification.h"
#include "garmin/link/GpsPacket.h"
#include "garmin/link/SerialGarminLink.h"
#include "support/Dialogue.h"
#include "support/TracedServices.h"

namespace marlune {
namespace {

TEST(GpsPacket, BuildsFramesWithStuffingAndChecksum) {
    const std::vector<std::tuple<std::uint8_t, Bytes, Bytes>> cases = {
        {10, {0, 0}, {16, 10, 2, 0, 0, 244, 16, 3}},
        {10, {}, {16, 10, 0, 246, 16, 3}},
        {10, {16}, {16, 10, 1, 16, 16, 229, 16, 3}},
        {16, {}, {16, 16, 16, 0, 240, 16, 3}},
        {240, {0}, {16, 240, 1, 0, 15, 16, 3}},
        {239, {0}, {16, 239, 1, 0, 16, 16, 16, 3}},  // the checksum is stuffed, too
        {0, {}, {16, 0, 0, 0, 16, 3}},
    };
    GpsPacket packet;
    for (const auto& [pid, data, frame] : cases) {
        EXPECT_EQ(packet.Build(pid, data), frame);
    }
    EXPECT_EQ(packet.Build(99, Bytes(255, 1)).size(), 3U + 255 + 1 + 2);
    EXPECT_EQ(packet.errorNumber(), 0);
    EXPECT_TRUE(packet.Build(99, Bytes(256, 1)).empty());
    EXPECT_EQ(packet.errorNumber(), 6);
}

TEST(GpsPacket, ParsesWhatCameWithoutCheckingIt) {
    const std::vector<std::tuple<Bytes, bool, int, Bytes>> cases = {
        {{16, 10, 1, 16, 16, 229, 16, 3}, true, 10, {16}},
        {{16, 35, 2, 7, 8, 99, 16, 3}, true, 35, {7, 8}},  // wrong checksum
        {{16, 35, 9, 7, 8}, true, 35, {7, 8}},             // shorter than it says
        {{16, 35, 0, 0}, true, 35, {}},
        {{16, 35, 0}, false, 0, {}},
        {{0}, false, 0, {}},
        {{}, false, 0, {}},
        {{16, 16, 16, 0}, false, 0, {}},  // three bytes once it is unstuffed
    };
    for (const auto& [frame, parsed, pid, data] : cases) {
        GpsPacket packet;
        packet.LetPid(77);
        EXPECT_EQ(packet.Parse(frame), parsed);
        EXPECT_EQ(packet.GetPid(), pid);
        EXPECT_EQ(packet.GetData(), data);
    }
}

TEST(GpsBuffer, ReversesAndRemovesStuffing) {
    EXPECT_EQ(GpsBuffer::Inverse(Bytes{1, 2, 3}), (Bytes{3, 2, 1}));
    const Bytes frame = {16, 10, 1, 16, 16, 229, 16, 3};
    EXPECT_EQ(GpsBuffer::Supp16(frame, true), (Bytes{16, 10, 1, 16, 229, 16, 3}));
    EXPECT_EQ(GpsBuffer::Supp16(frame, false), (Bytes{10, 1, 16, 229, 16, 3}));
    EXPECT_EQ(GpsBuffer::Supp16(Bytes{16, 5, 16, 7, 16, 3}, true), (Bytes{16, 5, 7, 16, 3}))
        << "what follows a 16 is kept, whatever it is";
    EXPECT_THROW(GpsBuffer::Supp16(Bytes{16, 3}, true), RunTimeError);
}

class LinkTest : public testing::Test {
protected:
    Bytes readFrame(const Bytes& arriving) {
        line_->arrive(arriving);
        return link_.grmReadPacket(1.0);
    }

    // A lease holds for the opening that it was taken in.
    ComPort& opened() {
        port_.open();
        return port_;
    }

    GpsControlEvents events_;
    TracedServices services_{events_};
    FakeHost& host_ = services_.host;
    ScriptedPort* line_ = new ScriptedPort(host_);
    ComPort port_{host_, std::unique_ptr<SerialPort>(line_)};
    PortLease lease_{opened()};
    SerialGarminLink link_{services_.services, lease_};
};

TEST_F(LinkTest, ReadsFramesToTheirTrueEnd) {
    const Bytes bodies[] = {
        {1, 16, 2},         // stuffed in the middle
        {16, 3},            // an end pair among the data
        {16, 3, 16, 3, 5},  // several
        {5, 16, 3},         // and right before the checksum
        {3, 3, 3},         {},
    };
    for (const Bytes& body : bodies) {
        const Bytes frame = garminFrame(35, body);
        EXPECT_EQ(readFrame(frame), frame);
        EXPECT_EQ(link_.grmReadPacket(1.0), Bytes{0}) << "nothing is left behind";
    }
}

TEST_F(LinkTest, EndsAtAChecksumOf3BehindAStuffedByte) {
    // Data 16 at the end, checksum 3: the pair looks like the end, and is taken for it.
    const Bytes whole = garminFrame(236, {16});
    ASSERT_EQ(whole, (Bytes{16, 236, 1, 16, 16, 3, 16, 3}));
    const Bytes upToChecksum(whole.begin(), whole.end() - 2);
    EXPECT_EQ(readFrame(whole), upToChecksum);
    std::array<std::uint8_t, 2> rest{};
    lease_.readArrived(rest);
    line_->arrive(whole);
    EXPECT_EQ(link_.grmReadPacketTimed(1), upToChecksum);
}

TEST_F(LinkTest, NothingAndNoFrameAreToldApart) {
    const double before = host_.elapsed();
    EXPECT_EQ(link_.grmReadPacket(1.0), Bytes{0});
    EXPECT_NEAR(host_.elapsed() - before, 1.1, 1e-6) << "one byte's time-out, not the argument";
    EXPECT_EQ(link_.receive().pid, 0);
    line_->arrive(Bytes{'$'});
    EXPECT_EQ(link_.receive().pid, 1);
}

TEST_F(LinkTest, WaitsInTheMiddleOfAFrameUntilTheHostStops) {
    const Bytes beginning = {16, 35, 200, 1, 2, 3};
    double stopAt = host_.elapsed() + 3600;
    host_.onStopRequested = [&] { return host_.elapsed() > stopAt; };
    EXPECT_EQ(readFrame(beginning), Bytes{0});
    EXPECT_GE(host_.elapsed(), stopAt);

    line_->unplug();
    stopAt = host_.elapsed() + 3600;
    EXPECT_EQ(readFrame(beginning), Bytes{0}) << "an unplugged line is not waited for";
    EXPECT_LT(host_.elapsed(), stopAt);
}

TEST_F(LinkTest, KeepsNoMoreOfAnEndlessFrameThanItsSizeAllows) {
    Bytes noise = {16, 35, 4};
    noise.insert(noise.end(), 100000, 7);
    noise.insert(noise.end(), {16, 3});
    const Bytes frame = readFrame(noise);
    EXPECT_EQ(frame.size(), 9U + 2 * 4);
    EXPECT_EQ(link_.grmReadPacket(1.0), Bytes{0}) << "the rest was read and dropped";
}

TEST_F(LinkTest, TimedReadTakesWholeFramesAndDrainsOthers) {
    const Bytes frame = garminFrame(35, {16, 16, 3, 4});
    line_->arrive(frame);
    EXPECT_EQ(link_.grmReadPacketTimed(2), frame);

    const Bytes substitute = {16, 1, 0, 254, 16, 3};
    const double before = host_.elapsed();
    EXPECT_EQ(link_.grmReadPacketTimed(3), substitute);
    EXPECT_GE(host_.elapsed() - before, 2.9);

    services_.trace.openEmpty();
    const int roundsBefore = host_.eventRounds;
    line_->arrive(Bytes{'$', 'G', 'P', 'G', 'A'});
    EXPECT_EQ(link_.grmReadPacketTimed(3), substitute);
    EXPECT_EQ(host_.traced(), std::vector<std::string>{"Erreur -  36 71 80 -  71 65"});
    EXPECT_GT(host_.eventRounds, roundsBefore) << "the host goes on meanwhile";
}

TEST_F(LinkTest, VoltagesAreKeptAsAText) {
    ConnectionState connection;
    GarminUnit unit;
    GarminIdentification identification(services_.services, link_, connection, unit);
    line_->play({{.write = garminFrame(10, {17, 0}), .answer = garminFrame(6, {10, 0})},
                 {.answer = garminFrame(40, {0x52, 1, 44, 1})}});
    identification.grmGetVoltages();
    EXPECT_EQ(unit.voltages, "Tensions 3.38 3");
    identification.grmGetVoltages();
    EXPECT_EQ(host_.boxTexts().back(), "critical: Erreur de protocole - pid = 0");
}

}  // namespace
}  // namespace marlune
