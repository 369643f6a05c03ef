// Downloads, played from the first command to the last event: over every line where the lines do
// the same, else over a serial line.
#include <gtest/gtest.h>

#include "garmin/GarminRecords.h"

namespace marlune {
namespace {

const std::string kTags = "A100 D100 A200 D201 A300 D300 A400 D400";
const std::string kWaypointsHeader =
    "---- W;id;lat;lon;comment;altitude;symbole;display opt. ------";

struct Kind {
    std::uint8_t command;
    std::string letter;
    std::string header;
};
const Kind kWaypoints = {7, "W", kWaypointsHeader};
const Kind kTracks = {6, "T", "--- T;lat;lon;heure;altitude;debut -----"};
const Kind kRoutes = {4, "R", "-------- Routes --------"};

class DownloadTest : public testing::Test, protected Stage {
protected:
    explicit DownloadTest(Line line = Line::serial) : Stage(line) {}
    void SetUp() override { connectGarmin(kTags); }

    void getWaypts(const Script& script) {
        play(script, [&] { EXPECT_EQ(control().getWaypts(), resultOf(script)); });
    }
    void getTracks(const Script& script) {
        play(script, [&] { EXPECT_EQ(control().getTracks(), resultOf(script)); });
    }
    void GetRoutes(const Script& script) {
        play(script, [&] { EXPECT_EQ(control().GetRoutes(), resultOf(script)); });
    }
    void getProximites(const Script& script) {
        play(script, [this] { EXPECT_FALSE(control().getProximites()); });
    }
    // A waypoint and what the host is told of it.
    static Script taken(int number, const std::string& ident) {
        return {answers(35, d100(ident)),
                event("WayptData|" + std::to_string(number) + "|" + d100Line(ident) + "|D")};
    }
    // A record, what the host is told of it, and its acknowledgement.
    static Script record(std::uint8_t pid, const Bytes& data, const std::string& told) {
        return {answers(pid, data), event(told + "|D"), acks(pid)};
    }
    // The opening of a download of so many records.
    static Script opening(std::uint8_t count, const Kind& kind = kWaypoints) {
        return {sends(10, {kind.command, 0}), answers(6, {10, 0}), answers(27, {count, 0}),
                acks(27),
                event("StartDownload|" + kind.letter + "|" + std::to_string(count) + "|" +
                      kind.header)};
    }
    static Script waypoint(int number, const std::string& ident) {
        return taken(number, ident) + Script{acks(35)};
    }
    static Script complete(const Kind& kind = kWaypoints) {
        return {answers(12, {kind.command, 0}), acks(12), event("EndDownload|" + kind.letter)};
    }
};

class EveryLineDownloadTest : public DownloadTest, public testing::WithParamInterface<Line> {
protected:
    EveryLineDownloadTest() : DownloadTest(GetParam()) {}
};
INSTANTIATE_TEST_SUITE_P(, EveryLineDownloadTest, kEveryLine, lineName);

const Step kWaypointsInterrupted = box(BoxIcon::information, "Transfert Interrompu");
const Script kTracksInterrupted = {box(BoxIcon::information, "Transfert interrompu"),
                                   event("EndDownload|T")};

TEST_P(EveryLineDownloadTest, HandsOverWaypointsOneByOne) {
    getWaypts(opening(2) + waypoint(1, "PT1") + waypoint(2, "PT2") + complete());
    // And once more: the line is emptied first, so what was left over does no harm.
    leaveOver(12);
    getWaypts(opening(1) + waypoint(1, "PT3") + complete());
}

TEST_P(EveryLineDownloadTest, SkipsAtMostFivePacketsInFrontOfTheCount) {
    const Script script = Script{sends(10, {7, 0})} + Script(5, answers(255));
    getWaypts(
        script +
        Script{answers(27, {1, 0}), acks(27), event("StartDownload|W|1|" + kWaypointsHeader)} +
        waypoint(1, "PT1") + complete());
    getWaypts(script + Script{answers(255), answers(27, {1, 0}), protocolError(255)});
}

TEST_F(DownloadTest, IsRefusedOrNotAnswered) {
    getWaypts({sends(10, {7, 0}), answers(21, {10, 0}), answers(27, {1, 0}), protocolError(21)});
    const double before = host.elapsed();
    getWaypts({sends(10, {7, 0}), protocolError(0)});
    EXPECT_NEAR(host.elapsed() - before, 6 * 1.1, 1e-6) << "six receives in all";
}

TEST_P(EveryLineDownloadTest, TellsThatNothingIsThere) {
    const Step count = answers(27, {0, 0});
    getWaypts({sends(10, {7, 0}), count, acks(27),
               box(BoxIcon::information, "Aucun Waypoint dans ce Gps")});
    getTracks({sends(10, {6, 0}), count, acks(27),
               box(BoxIcon::information, "Aucune trace dans ce GPS")});
    GetRoutes({sends(10, {4, 0}), count, acks(27),
               box(BoxIcon::information, "Aucune route dans ce Gps")});
}

TEST_F(DownloadTest, UnknownPacketsUseUpPasses) {
    // Three passes for two records: the unknown packet takes one, so the end is not read.
    getWaypts(opening(2) + waypoint(1, "PT1") + Script{answers(34, d300(false))} +
              waypoint(3, "PT2") + Script{answers(12, {7, 0}), event("EndDownload|W")});
}

TEST_F(DownloadTest, WaypointsGoOnListeningThroughSilence) {
    getWaypts(opening(2) + Script(3, kWaypointsInterrupted) + Script{event("EndDownload|W")});
    // A late record is still taken.
    events.when("StartDownload", 1, [this] { port().arrive(garminFrame(35, d100("LATE")), 9.0); });
    getWaypts(
        opening(8) + Script(8, kWaypointsInterrupted) +
        Script{event("WayptData|9|" + d100Line("LATE") + "|D"), acks(35), event("EndDownload|W")});
}

TEST_F(DownloadTest, TracksAndRoutesEndAtTheFirstSilence) {
    getTracks(opening(2, kTracks) + kTracksInterrupted);
    GetRoutes(opening(2, kRoutes) +
              Script{box(BoxIcon::information, "Transfert Interrompu"), event("EndDownload|R")});
}

TEST_P(EveryLineDownloadTest, ARecordThatCannotBeReadIsAcknowledgedWithoutAnEvent) {
    connectGarmin("A100 D103");
    Bytes badSymbol(60, ' ');
    badSymbol[58] = 16;
    getWaypts(opening(3) +
              Script{answers(35, badSymbol), acks(35), answers(35, {1, 2, 3}), acks(35),
                     answers(35), acks(35)} +
              complete());
}

TEST_F(DownloadTest, AcceptsAWrongChecksumAndReadsAnOverlongRecord) {
    Bytes wrong = garminFrame(35, d100("PT1"));
    ++wrong[wrong.size() - 3];
    Bytes longer = d100("PT2");
    longer.resize(200, 'x');
    getWaypts(
        opening(2) +
        Script{answersBytes(wrong), event("WayptData|1|" + d100Line("PT1") + "|D"), acks(35)} +
        record(35, longer, "WayptData|2|" + d100Line("PT2")) + complete());
}

TEST_F(DownloadTest, ACountAbove32767MakesNoPass) {
    getWaypts({sends(10, {7, 0}), answers(27, {0xFF, 0xFF}), acks(27),
               event("StartDownload|W|-1|" + kWaypointsHeader), event("EndDownload|W")});
}

TEST_P(EveryLineDownloadTest, TracksCarryHeadersAndSkipPointsWithoutPosition) {
    connectGarmin("A301 D310 D300");
    getTracks(opening(4, kTracks) +
              record(99, join({{1, 5}, text0("C\xF4te")}), "TrackHeader|1|N;Côte") +
              record(34, d300(true), "TrackData|2|" + kD300Line + "-1") +
              Script{answers(34, d300WithoutPosition()), acks(34)} +
              record(34, d300(false), "TrackData|4|" + kD300Line + "0") + complete(kTracks));
}

TEST_P(EveryLineDownloadTest, RoutesNumberHeadersPointsAndLinksTogether) {
    connectGarmin("A100 D100 A201 D202 D210");
    const Bytes link = join({{255, 0}, Bytes(18, 0), text0("LNK")});
    GetRoutes(opening(5, kRoutes) + record(29, text0("ALPES"), "RouteHeader|1|R;1;ALPES") +
              record(30, d100("PT1"), "RouteData|2|" + d100Line("PT1")) +
              record(98, link, "RouteLink|3|L;RteLink LNK") +
              record(30, d100("PT2"), "RouteData|4|" + d100Line("PT2")) +
              record(29, text0("JURA"), "RouteHeader|5|R;2;JURA") + complete(kRoutes));
}

TEST_P(EveryLineDownloadTest, RoutePointsHaveATypeOfTheirOwn) {
    connectGarmin("A100 D108 D106 A200 D201");
    // D106: position at 14, symbol at 22, ident at 24.
    const Bytes point = join({Bytes(14, 0), k45, k45, {10, 0}, text0("WPT"), text0("LINK")});
    GetRoutes(opening(2, kRoutes) +
              record(29, join({{3}, padded(std::string("A") + '\0', 20)}), "RouteHeader|1|R;3;A") +
              record(30, point, "RouteData|2|W;WPT;45;45;;0;10;0") + complete(kRoutes));
}

TEST_F(DownloadTest, ProximitiesHaveTheirOwnWay) {
    const Script start = {sends(10, {3, 0}), answers(6, {10, 0}), answers(27, {2, 0}), acks(27),
                          event("StartDownload|P|2|--- Proximites ------")};
    const Script first = record(19, d100("PX1"), "ProxData|1|" + d100Line("PX1"));
    const Script second = record(19, d100("PX2"), "ProxData|2|" + d100Line("PX2"));
    const Step end = event("EndDownload|P");
    // All came: transfer complete is left unread.
    getProximites(start + first + second + Script{answers(12, {3, 0}), end});
    port().purge();
    // It came early: told, not acknowledged.
    getProximites(start + first +
                  Script{answers(12), box(BoxIcon::information, "Transfert terminé"), end});
    getProximites(start + first + Script{answers(35, d100("X")), protocolError(35), end});
    getProximites(start + Script{protocolError(0), end});
    getProximites({sends(10, {3, 0}), answers(21), protocolError(21)});
    getProximites(
        {sends(10, {3, 0}), answers(6), answers(6), answers(27, {1, 0}), protocolError(6)});
    port().purge();
    getProximites({sends(10, {3, 0}), answers(6), answers(27, {0, 0}), acks(27),
                   event("StartDownload|P|0|--- Proximites ------"), end});
}

TEST_F(DownloadTest, ProximitiesDoNotEmptyTheLineFirst) {
    const int purges = port().purges;
    getProximites({sends(10, {3, 0}), answers(21), protocolError(21)});
    EXPECT_EQ(port().purges, purges);
    getWaypts({sends(10, {7, 0}), answers(21), protocolError(21)});
    EXPECT_GT(port().purges, purges);
}

TEST_P(EveryLineDownloadTest, GatesWhatTheUnitDoesNotOffer) {
    connectGarmin("L001 D100 D300");
    const Step notAvailable = box(BoxIcon::critical, "Protocole non disponible pour ce GPS");
    const int purges = port().purges;
    getWaypts({notAvailable});
    getTracks({notAvailable});
    GetRoutes({notAvailable});
    getProximites({box(BoxIcon::exclamation, "Protocole non supporté par ce GPS")});
    EXPECT_EQ(port().purges, purges) << "the gate stands in front of everything";
}

TEST_F(DownloadTest, StopsAfterTheRecordInHand) {
    events.when("WayptData", 1, [this] { control().StopTransfert(); });
    getWaypts(opening(3) + taken(1, "PT1") +
              Script{sends(10, {0, 0}), acks(35), event("EndDownload|W")});
    getWaypts(opening(1) + waypoint(1, "PT2") + complete());
}

TEST_F(DownloadTest, EndsWithoutAWordWhenTheHostRequestsAStop) {
    events.when("WayptData", 1, [this] { host.stop = true; });
    getWaypts(opening(3) + waypoint(1, "PT1") + Script{event("EndDownload|W")});
    getWaypts({sends(10, {7, 0})});
    host.stop = false;
    // The unit still believes in the transfer: disconnecting aborts it.
    play({sends(10, {0, 0})}, [this] { control().gpsDisconnect(); });
}

TEST_F(DownloadTest, AHandlerMayDisconnectOrReconnectOrDestroy) {
    const Script untilFirst = opening(3) + taken(1, "PT1");
    // Nothing is written on a connection that was closed, and not on the next one either.
    events.when("WayptData", 1, [this] { control().gpsDisconnect(); });
    getWaypts(untilFirst + Script{sends(10, {0, 0}), event("EndDownload|W")});

    connectGarmin(kTags);
    events.when("WayptData", 1, [this] {
        control().gpsDisconnect();
        EXPECT_TRUE(control().gpsConnect());
    });
    getWaypts(untilFirst + Script{sends(10, {0, 0})} + garminHandshake(kTags) +
              Script{event("EndDownload|W")});
    getWaypts(opening(1) + waypoint(1, "PT1") + complete());

    events.when("WayptData", 1, [this] { destroyControl(); });
    play(untilFirst + Script{event("EndDownload|W")}, [this] { control().getWaypts(); });
}

TEST_F(DownloadTest, AHandlerMayStartAnotherTransfer) {
    events.when("WayptData", 1, [this] { control().getWaypts(); });
    getWaypts(opening(2) + taken(1, "PT1") + opening(1) + waypoint(1, "IN") + complete() +
              Script{acks(35)} + waypoint(2, "PT2") + complete());
}

TEST_F(DownloadTest, AnUnpluggedLineEndsTheDownloadAtOnce) {
    const double before = host.elapsed();
    events.when("WayptData", 1, [this] { port().unplug(); });
    getTracks(opening(2, kTracks) + kTracksInterrupted);
    getWaypts(opening(2) + taken(1, "PT1") + Script(2, kWaypointsInterrupted) +
              Script{event("EndDownload|W")});
    EXPECT_LT(host.elapsed() - before, 1.5);
}

}  // namespace
}  // namespace marlune
