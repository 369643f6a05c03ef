// The Magellan transfers as dialogues.
#include <gtest/gtest.h>

#include "nmea/SentenceStage.h"
#include "nmea/magellan/Magellan.h"

namespace marlune {
namespace {

constexpr const char* kStop = "$PMGNCMD,STOP*6A\r\n";
constexpr const char* kEnd = "$PMGNCMD,END*3D\r\n";
constexpr const char* kUnable = "$PMGNCMD,UNABLE*7C\r\n";
constexpr const char* kAskWaypoints = "$PMGNCMD,WAYPOINT*71\r\n";
constexpr const char* kAskTracks = "$PMGNCMD,TRACK,2*23\r\n";
constexpr const char* kAskRoutes = "$PMGNCMD,ROUTE*2B\r\n";
constexpr const char* kAskFix = "$PMGNCMD,FIX*25\r\n";

std::string wpl(const std::string& name) {
    return sentence("$PMGNWPL,4830.000,N,00130.000,W,0000152,M," + name + ",,a");
}

// The same as it is sent.
std::string uploaded(const std::string& name) {
    return sentence("$PMGNWPL,4830.000,N,00130.000,W,152,M," + name + ",,a");
}

std::string trk(const std::string& fields) {
    return sentence("$PMGNTRK,4830.000,N,00130.000,W,00152,M," + fields);
}

std::string gga(const std::string& time, const std::string& quality) {
    return sentence("$GPGGA," + time + ",4830.000,N,00130.000,W," + quality + ",08,0.9,152,M,,M,,");
}

std::string pointLine(const std::string& name) {
    return "W;" + name + ";48.5;-1.5;;152;18;0";
}

class MagellanTest : public testing::Test, protected SentenceStage {
protected:
    ~MagellanTest() override { EXPECT_EQ(line->problems(), ""); }

    void knows(const std::string& name) { magellan.waypoints[name] = waypoint(name); }
    static Waypoint waypoint(const std::string& name) {
        Waypoint point;
        point.SetAttributes("MGN", pointLine(name));
        return point;
    }

    PortLease lease{*port};
    Magellan device{services, lease, connection, nmea, magellan};
};

TEST_F(MagellanTest, ExchangesVersions) {
    expect("$PMGNCMD,VERSION*28\r\n", " $PMGNVER,24, 5.12 ,MAP 330 \xC9t\xE9*1A\r\n", 1.2);
    expect(sentence("$PMGNCSM,1A"));
    expect(sentence("$PMGNCMD,HANDOFF"));
    EXPECT_TRUE(device.mgnVersion());
    EXPECT_TRUE(connection.connected);
    EXPECT_EQ(connection.productId, "24");
    EXPECT_EQ(connection.softwareVersion, "5.12");
    EXPECT_EQ(connection.description, "MAP 330 Été");
    EXPECT_EQ(host.traced(),
              (Log{"SEND: $PMGNCMD,VERSION*28", "GET1: $PMGNVER,24, 5.12 ,MAP 330 \xC9t\xE9*1A",
                   "SEND: $PMGNCSM,1A*15", "SEND: $PMGNCMD,HANDOFF*3E",
                   "Marlune Version 1.0.0 -  GPSId: 24 Version: 5.12 - MAP 330 \xC9t\xE9"}));
}

TEST_F(MagellanTest, AnswersThatAreNoVersionEndTheExchange) {
    expect("$PMGNCMD,VERSION*28\r\n", "$PMGNCMD,UNABLE", 20);
    EXPECT_FALSE(device.mgnVersion());
    EXPECT_FALSE(connection.connected);
    EXPECT_EQ(host.traced().back(), "GET2: $PMGNCMD,UNABLE");
    expect("$PMGNCMD,VERSION*28\r\n");
    const double start = host.elapsed();
    EXPECT_FALSE(device.mgnVersion());
    // Four times a second, then the 13.8 s in which the first of 128 bytes may come.
    EXPECT_NEAR(host.elapsed() - start, 4 * 14.8, 0.01);
}

TEST_F(MagellanTest, DownloadsWaypoints) {
    const std::string good = wpl("HOME");
    const std::string lowerCase = "$PMGNWPL,4830.000,N,00130.000,W,1,M,J,,a*5f\r\n";
    knows("OLD");
    expect(kStop);
    expect(kAskWaypoints, "noise" + good + good + lowerCase +
                              sentence("$PMGNWPL,4830.000,N,00130.000,W,1e40,M,BIG,,a") +
                              sentence("$PMGNCSM,00") + wpl("CUT").substr(0, 20) + wpl("LOST") +
                              wpl("caf\xE9") + kEnd);
    EXPECT_TRUE(device.mgnGetWaypoints());
    EXPECT_EQ(takeLog(),
              (Log{writes(kStop), writes(kAskWaypoints), "StartDownload|W|100|Waypoints",
                   "GpsInfo|Download en cours...1", "WayptData|100|" + pointLine("HOME") + "|D",
                   "GpsInfo|Download en cours...6", "WayptData|100|" + pointLine("café") + "|D",
                   "EndDownload|W", "GpsInfo|", "GpsInfo|"}));
    EXPECT_EQ(magellan.waypoints.size(), 2U) << "the old ones are gone";
    EXPECT_EQ(magellan.lastChecksum, "3D");
    const Log lines = host.traced();
    EXPECT_EQ(lines[2], "Get: " + good.substr(0, good.size() - 2));
    EXPECT_EQ(lines[4], "Doublon rejete " + good.substr(0, good.size() - 2));
    EXPECT_EQ(lines[6], "Bloc rejete " + lowerCase.substr(0, lowerCase.size() - 2));
}

TEST_F(MagellanTest, ReportsPiecesOfAListThatAreNoSentences) {
    std::string renamed = wpl("A");
    renamed[5] = 'X';
    expect(kStop);
    expect(kAskWaypoints, "the rest of one before" + wpl("B") + renamed + wpl("C").substr(1) +
                              sentence("$GPGLL,4830.000,N") + wpl("D") + wpl("E").substr(0, 20) +
                              kEnd);
    EXPECT_TRUE(device.mgnGetWaypoints());
    EXPECT_EQ(services.reports.transfer.transferred, 2);
    EXPECT_EQ(services.reports.transfer.wrongChecksum, 3);
}

TEST_F(MagellanTest, ListsThatDoNotEndProperlyAreFalse) {
    const std::vector<std::tuple<std::string, Log, double>> cases = {
        {kUnable, {}, 0},
        {wpl("A").substr(0, 20), {}, 3.3},
        {"", {"critical: Délai dépassé"}, 3.3},
        {"noise without a beginning", {"critical: Délai dépassé"}, 3.3},
    };
    for (const auto& [answer, boxes, seconds] : cases) {
        SentenceStage stage;
        PortLease itsLease(*stage.port);
        Magellan itsDevice(stage.services, itsLease, stage.connection, stage.nmea, stage.magellan);
        stage.expect(kStop);
        stage.expect(kAskWaypoints, answer);
        EXPECT_FALSE(itsDevice.mgnGetWaypoints());
        EXPECT_EQ(stage.host.boxTexts(), boxes);
        EXPECT_NEAR(stage.host.elapsed(), seconds, 0.01) << answer;
        const Log log = stage.takeLog();
        EXPECT_EQ(Log(log.end() - 3, log.end()), (Log{"EndDownload|W", "GpsInfo|", "GpsInfo|"}));
        stage.expect(kStop);
        stage.expect(kAskWaypoints, wpl("A") + kEnd);
        EXPECT_TRUE(itsDevice.mgnGetWaypoints()) << "nothing stays behind";
    }
}

TEST_F(MagellanTest, DownloadsTracks) {
    expect(kStop);
    expect(kAskTracks, trk("120000.00,A,LOOP,150325") + trk("180000.00,A,LOOP,150325") +
                           trk("120000.00,A,WAY") + trk("320000.00,A,X,320125") +
                           sentence("$PMGNTRK,4830.000,N,00130.000,W,1,M") + kEnd);
    EXPECT_TRUE(device.mgnGetTracks());
    EXPECT_EQ(
        takeLog(),
        (Log{writes(kStop), writes(kAskTracks), "StartDownload|T|100|Traces",
             "TrackHeader|100|N;LOOP - 15/03/2025|D", "GpsInfo|Download en cours...1",
             "TrackData|100|T;48.5;-1.5;45731.5;152;-1|D", "GpsInfo|Download en cours...2",
             "TrackData|100|T;48.5;-1.5;45731.75;152;0|D", "TrackHeader|100|N;WAY - 01/06/2007|D",
             "GpsInfo|Download en cours...3", "TrackData|100|T;48.5;-1.5;39234.5;152;-1|D",
             "EndDownload|T", "GpsInfo|", "GpsInfo|"}));
}

TEST_F(MagellanTest, TellsThatThereIsNoTrack) {
    for (const auto& [answer, result] : {std::pair(kEnd, true), std::pair(kUnable, false)}) {
        expect(kStop);
        expect(kAskTracks, answer);
        EXPECT_EQ(device.mgnGetTracks(), result);
        EXPECT_EQ(takeLog(), (Log{writes(kStop), writes(kAskTracks), "StartDownload|T|100|Traces",
                                  "EndDownload|T", "GpsInfo|", "GpsInfo|",
                                  "box information: Aucune Trace dans ce GPS"}));
    }
    expect(kStop);
    expect(kAskTracks);
    EXPECT_FALSE(device.mgnGetTracks());
    EXPECT_EQ(host.boxTexts().back(), "critical: Délai dépassé")
        << "nobody knows what a silent receiver holds";
}

TEST_F(MagellanTest, PointsWithoutANameBelongToTheTrackUnderWay) {
    expect(kStop);
    expect(kAskTracks, trk("060000.00,A,,150325") + trk("120000.00,A,LOOP,150325") +
                           trk("180000.00,A,,150325") + trk("180000.00,A,LOOP,150325") + kEnd);
    EXPECT_TRUE(device.mgnGetTracks());
    Log told = takeLog();
    std::erase_if(told, [](const std::string& line) { return !line.starts_with("Track"); });
    EXPECT_EQ(told, (Log{"TrackData|100|T;48.5;-1.5;45731.25;152;-1|D",
                         "TrackHeader|100|N;LOOP - 15/03/2025|D",
                         "TrackData|100|T;48.5;-1.5;45731.5;152;-1|D",
                         "TrackData|100|T;48.5;-1.5;45731.75;152;0|D",
                         "TrackData|100|T;48.5;-1.5;45731.75;152;0|D"}));
    ASSERT_EQ(services.records.tracks.size(), 2U);
    EXPECT_TRUE(services.records.tracks[0].points[0].segmentStart);
    EXPECT_FALSE(services.records.tracks[1].points[1].segmentStart);
}

TEST_F(MagellanTest, RoutesMayLackTheirName) {
    knows("HOME");
    knows("PT2");
    expect(kStop);
    expect(kAskRoutes, sentence("$PMGNRTE,1,1,c,1,HOME,a,PT2,a") +
                           sentence("$PMGNRTE,1,1,c,2,HOME,PT2,a") + kEnd);
    EXPECT_TRUE(device.mgnGetRoutes());
    Log told = takeLog();
    std::erase_if(told, [](const std::string& line) { return !line.starts_with("Route"); });
    EXPECT_EQ(told, (Log{"RouteHeader|1|R;1;ROUTE 1|D", "RouteData|2|" + pointLine("HOME") + "|D",
                         "RouteData|3|" + pointLine("PT2") + "|D", "RouteHeader|4|R;2;HOME|D",
                         "RouteData|5|" + pointLine("PT2") + "|D"}));
}

TEST_F(MagellanTest, DownloadsRoutesOverKnownWaypoints) {
    knows("A");
    knows("B");
    expect(kStop);
    expect(kAskRoutes,
           sentence("$PMGNRTE,2,1,c,1,FIRST,A,a,B,a") +
               sentence("$PMGNRTE,2,2,c,1,FIRST,MISSING,a,A,a") +
               sentence("$PMGNRTE,2,1,c,7,,B,a") + sentence("$PMGNRTE,3,2,c,5,LATE,A,a") +
               sentence("$PMGNRTE,1,1,c,300,BAD,A,a") + "$PMGNRTE,1,1,c,9,WRONG,A,a*00\r\n" +
               sentence("$PMGNRTE,9,1,c,8,CUT,A,a") + kEnd);
    EXPECT_TRUE(device.mgnGetRoutes());
    EXPECT_EQ(takeLog(),
              (Log{writes(kStop), writes(kAskRoutes), "StartDownload|R|100|Routes MGN",
                   "RouteHeader|1|R;1;FIRST|D", "RouteData|2|" + pointLine("A") + "|D",
                   "RouteData|3|" + pointLine("B") + "|D", "RouteData|4|" + pointLine("A") + "|D",
                   "RouteHeader|5|R;7;ROUTE 7|D", "RouteData|6|" + pointLine("B") + "|D",
                   "RouteHeader|7|R;5;LATE|D", "RouteData|8|" + pointLine("A") + "|D",
                   "RouteHeader|9|R;8;CUT|D", "RouteData|10|" + pointLine("A") + "|D",
                   "EndDownload|R", "GpsInfo|", "GpsInfo|"}));
    const Log lines = host.traced();
    EXPECT_EQ(lines[4], "Waypoint inconnu MISSING");
    EXPECT_EQ(lines[8].substr(0, 12), "Bloc rejete ");
    EXPECT_EQ(lines[10], "Bloc rejete $PMGNRTE,1,1,c,9,WRONG,A,a*00");
}

TEST_F(MagellanTest, RoutesNeedWaypoints) {
    EXPECT_FALSE(device.mgnGetRoutes());
    EXPECT_EQ(takeLog(), Log{"box information: Download Waypoints obligatoire"});
    knows("A");
    expect(kStop);
    expect(kAskRoutes, kEnd);
    EXPECT_TRUE(device.mgnGetRoutes());
    EXPECT_EQ(takeLog().back(), "box information: Aucune route dans ce Gps");
}

TEST_F(MagellanTest, UploadsWaypoints) {
    expect(uploaded("A"), "$PMGNCSM,00*1C\r\n");
    expect(uploaded("\xC9"));
    expect(kEnd);
    device.mgnSendWaypoints({.records = {waypoint("A"), waypoint("É")}});
    EXPECT_EQ(takeLog(),
              (Log{"StartUpload|W|2|Waypoints", writes(uploaded("A")),
                   "WayptData|1|" + pointLine("A") + "|U", writes(uploaded("\xC9")),
                   "WayptData|2|" + pointLine("É") + "|U", writes(kEnd), "EndUpload|W"}));
    EXPECT_EQ(host.elapsed(), 0) << "acknowledgements are not waited for";
}

TEST_F(MagellanTest, UploadsRoutes) {
    Route route;
    route.SetAttributes("R;3;TOUR");
    Route empty;
    empty.SetAttributes("R;4;EMPTY");
    Log expected = {"StartUpload|R|5|Upload Routes"};
    for (const std::string& text :
         {uploaded("A"), uploaded("B"), uploaded("C"), sentence("$PMGNRTE,2,1,c,3,TOUR,A,a,B,a"),
          sentence("$PMGNRTE,2,2,c,3,TOUR,C,a")}) {
        expect(text);
        expected.push_back(writes(text));
    }
    expect(kEnd);
    for (const char* name : {"A", "B", "C"}) {
        route.AddWaypt(waypoint(name));
    }
    device.mgnSendRoutes({.records = {route, empty}});
    EXPECT_EQ(takeLog(),
              (expected + Log{"RouteHeader|1|R;3;TOUR|U", "RouteData|2|" + pointLine("A") + "|U",
                              "RouteData|3|" + pointLine("B") + "|U",
                              "RouteData|4|" + pointLine("C") + "|U", "RouteHeader|5|R;4;EMPTY|U",
                              writes(kEnd), "EndUpload|R"}));
}

TEST_F(MagellanTest, UploadsTracksUpToAPointThatNoSentenceHolds) {
    const auto point = [](const std::string& track, double latitude) {
        Trace item;
        item.SetAttributes("MGN", "T;" + std::to_string(latitude) + ";-1.5;39234.5;152;0");
        item.SetName(track);
        return item;
    };
    const std::string text = sentence("$PMGNTRK,4830.000,N,00130.000,W,00152,M,120000.00,A,LOOP");
    expect(text);
    expect(text);
    expect(kEnd);
    device.mgnSendTracks({.records = {TrkHeader(), point("Loop", 48.5), point("Loop", 48.5),
                                      point("X", 1e9), point("X", 48.5)}});
    const std::string line = "T;48.5;-1.5;39234.5;152;0|U";
    EXPECT_EQ(takeLog(), (Log{"StartUpload|T|4|Upload Traces", "TrackHeader|1|N;Loop|U",
                              writes(text), "TrackData|1|" + line, writes(text),
                              "TrackData|2|" + line, writes(kEnd), "EndUpload|T"}));
}

TEST_F(MagellanTest, FollowsThePosition) {
    expect(kAskFix, gga("120000.00", "1"), 4);
    speak(gga("120001.00", "0"), 1);
    speak(gga("060000.00", "1"), 1);
    speak(gga("180000.00", "1"), 1);
    expect(kStop);
    events.when("PvtData", 2, [this] { connection.realTimeRunning = false; });
    device.mgnPvt();
    EXPECT_EQ(takeLog(), (Log{writes(kAskFix), "box critical: Délai dépassé",
                              "Startpvt|N;Trace tps réel - ", "PvtData|T;48.5;-1.5;39234.25;152;-1",
                              "PvtData|T;48.5;-1.5;39234.75;152;0", writes(kStop), "EndPvt"}));
}

TEST_F(MagellanTest, TellsThatThereIsNoPosition) {
    expect(kAskFix, std::string("$GPGGA,1") + kUnable);
    device.mgnPvt();
    EXPECT_EQ(takeLog(), (Log{writes(kAskFix), "box information: Position non disponible"}));
    // A receiver that declines may find its position yet, until the overall time has passed.
    expect(kAskFix, kUnable);
    const double declined = host.elapsed();
    device.mgnPvt();
    EXPECT_EQ(takeLog().back(), "box information: Position non disponible");
    EXPECT_NEAR(host.elapsed() - declined, 11, 0.6);
    EXPECT_EQ(services.reports.transfer.ending, Ending::refused);
    expect(kAskFix, kUnable);
    speak(gga("110000.00", "1") + gga("120000.00", "1"), 2);
    expect(kStop);
    events.when("PvtData", 1, [this] { connection.realTimeRunning = false; });
    device.mgnPvt();
    EXPECT_EQ(takeLog(), (Log{writes(kAskFix), "Startpvt|N;Trace tps réel - ",
                              "PvtData|T;48.5;-1.5;39234.5;152;-1", writes(kStop), "EndPvt"}));
    expect(kAskFix);
    const double start = host.elapsed();
    device.mgnPvt();
    EXPECT_EQ(takeLog().back(), "box information: Position non disponible");
    EXPECT_NEAR(host.elapsed() - start, 11, 0.01) << "10 s, and the read that they fall into";
    EXPECT_FALSE(connection.realTimeRunning);
}

TEST_F(MagellanTest, NothingIsReadOrWrittenOnceAHandlerDisconnected) {
    expect(kStop);
    expect(kAskWaypoints, wpl("A") + wpl("B") + kEnd);
    events.when("WayptData", 1, [this] { port->close(); });
    EXPECT_FALSE(device.mgnGetWaypoints());
    EXPECT_EQ(takeLog().back(), "GpsInfo|");
    EXPECT_EQ(host.boxTexts(), Log{});
    EXPECT_EQ(host.elapsed(), 0);
    port->open();
    takeLog();
    device.mgnSendWaypoints({.records = {waypoint("A")}});
    EXPECT_EQ(takeLog(), (Log{"StartUpload|W|1|Waypoints", "EndUpload|W"}))
        << "the lease stays lost";
}

// Before the upload, in the middle of it, or with answers unread that hide it.
TEST_F(MagellanTest, AnUploadEndsWithItsPort) {
    const std::string first = uploaded("A");
    const Log none = {"StartUpload|W|3|Waypoints", "EndUpload|W"};
    const Log one = {"StartUpload|W|3|Waypoints", writes(first),
                     "WayptData|1|" + pointLine("A") + "|U", "EndUpload|W"};
    const std::tuple<int, const char*, const Log*> cases[] = {
        {0, "", &none}, {1, "", &one}, {1, "$PMGNCSM,00*1C\r\n", &one}};
    for (const auto& [nth, answer, log] : cases) {
        SentenceStage stage;
        PortLease itsLease(*stage.port);
        Magellan itsDevice(stage.services, itsLease, stage.connection, stage.nmea, stage.magellan);
        if (nth == 0) {
            stage.line->unplug();
        } else {
            stage.expect(first, answer);
            stage.events.when("WayptData", nth, [&] { stage.line->unplug(); });
        }
        itsDevice.mgnSendWaypoints({.records = {waypoint("A"), waypoint("B"), waypoint("C")}});
        EXPECT_EQ(stage.takeLog(), *log);
        EXPECT_EQ(stage.services.reports.transfer.ending, Ending::deviceGone);
        EXPECT_EQ(stage.services.reports.transfer.transferred, nth);
    }
    line->unplug();
    Route route;
    route.SetAttributes("R;3;TOUR");
    route.AddWaypt(waypoint("A"));
    device.mgnSendRoutes({.records = {route}});
    Trace point;
    point.SetAttributes("MGN", "T;1;2;3;4;0");
    device.mgnSendTracks({.records = {point}});
    EXPECT_EQ(takeLog(), (Log{"StartUpload|R|2|Upload Routes", "EndUpload|R",
                              "StartUpload|T|1|Upload Traces", "EndUpload|T"}));
}

TEST_F(MagellanTest, AStoppingHostSilencesTheReceiver) {
    expect(kStop);
    expect(kAskWaypoints, wpl("A") + wpl("B"));
    expect(kStop);
    events.when("WayptData", 1, [this] { host.stop = true; });
    EXPECT_FALSE(device.mgnGetWaypoints());
    EXPECT_EQ(magellan.waypoints.size(), 1U);
    EXPECT_EQ(host.elapsed(), 0);
}

TEST_F(MagellanTest, AnUnpluggedPortLetsTheTimeOutsPass) {
    line->unplug();
    EXPECT_FALSE(device.mgnGetWaypoints());
    EXPECT_EQ(host.boxTexts(), Log{"critical: Délai dépassé"});
    EXPECT_NEAR(host.elapsed(), 3, 0.1);
    EXPECT_FALSE(device.mgnVersion());
}

}  // namespace
}  // namespace marlune
