// The MLR transfers as dialogues.
#include <gtest/gtest.h>

#include "base/RunTimeError.h"
#include "nmea/SentenceStage.h"
#include "nmea/mlr/Mlr.h"

namespace marlune {
namespace {

using namespace std::string_literals;

constexpr const char* kWho = "$PMLR,26,01,01,0339\r\n";
constexpr const char* kWhoOld = "$PMLR,0E,01,01,0346\r\n";
constexpr const char* kDone = "$PMLR,06,00,02A9\r\n";
constexpr const char* kAskTracks = "$PMLR,24,02,0101,0399\r\n";
constexpr const char* kAskWaypoints = "$PMLR,24,02,0301,039B\r\n";
constexpr const char* kFast = "open baud=38400 parity=n data=8 stop=2";
constexpr const char* kSlow = "open baud=4800 parity=n data=8 stop=2";
constexpr const char* kProgress = "GpsInfo|Download en cours ....";

const std::string kSeam = "\r\n\x8B";
const std::string kFirstBlock = "\x8Bhhhh\0DEBUT"s;
const std::string kClosing = kSeam + "hhhh\0FIN\r\n"s;

// Point 1 at 48.5, -1.5 and 152 m without a time; the number is the second byte.
std::string trackRecord(char number) {
    return "\0"s + number + "\x00\x2C\x67\x30\xFF\xFE\xA0\x70\x00\x98\0\0\0\0"s;
}

std::string block(char count, const std::string& records) {
    return kSeam + "hhhh" + count + records;
}

std::string wpl(const std::string& texts) {
    return sentence("$GPWPL,4830.000,N,00130.000,W," + texts);
}

std::string pointLine(const std::string& name, const std::string& comment = "") {
    return "W;" + name + ";48.5;-1.5;" + comment + ";0;18;0";
}

// What every block download does first and last.
Log blockDownload(const char* request, const Log& progress) {
    Log log = {writes(request), "close", kProgress, kFast};
    for (const std::string& total : progress) {
        log.push_back(kProgress + total);
    }
    return log + Log{"close", kSlow, writes(kDone), "GpsInfo|Download terminé"};
}

class MlrTest : public testing::Test, protected SentenceStage {
protected:
    ~MlrTest() override { EXPECT_EQ(line->problems(), ""); }

    // The device sends its blocks in answer to the request, in two parts.
    void expectBlocks(const char* request, const std::string& stream) {
        mlr.sendsBlocks = true;
        expect(request, stream.substr(0, stream.size() / 2));
        speak(stream.substr(stream.size() / 2), 0.2);
        expect(kDone);
    }

    PortLease lease{*port};
    Mlr device{services, lease, connection, nmea, mlr};
};

TEST_F(MlrTest, IdentifiesABlockReceiver) {
    expect(kWho, "$GPGGA,1*00\r\n$PMLR,IDGPS,x,SP24,a,b,1.20,XC\xC9*00\r\n");
    expect(kDone);
    EXPECT_TRUE(device.mlrIdent());
    EXPECT_TRUE(connection.connected);
    EXPECT_TRUE(mlr.sendsBlocks);
    EXPECT_EQ(host.traced(),
              (Log{"SEND: $PMLR,26,01,01,0339", "$GPGGA,1*00",
                   "$PMLR,IDGPS,x,SP24,a,b,1.20,XC\xC9*00", "SEND: $PMLR,06,00,02A9",
                   "Marlune Version 1.0.0 -  GPSId:  Version: 1.2 - SP24 XC\xC9*00"}));
}

TEST_F(MlrTest, IdentifiesASentenceReceiver) {
    mlr.sendsBlocks = true;
    host.separator = ',';
    for (const auto& [reply, description, version] :
         {std::tuple("$INFOS,SP12 Version 2.50 du 01/02/98*00\r\n", "GPS MLR SP12", "12"),
          std::tuple("$INFOS VALSAT,2.50\r\n", "GPS MLR VALSAT", "2,5"),
          std::tuple("$INFOS\r\n", "GPS MLR ", "0")}) {
        const double start = host.elapsed();
        expect(kWho);
        expect(kWhoOld, reply);
        expect(kDone);
        EXPECT_TRUE(device.mlrIdent());
        EXPECT_FALSE(mlr.sendsBlocks);
        EXPECT_EQ(connection.description, description);
        EXPECT_EQ(connection.softwareVersion, version) << "the first number in the reply";
        EXPECT_NEAR(host.elapsed() - start, 3.8, 0.65) << "half a second, and a read";
    }
}

TEST_F(MlrTest, ASilentReceiverIsNotIdentifiedByAnEarlierAnswer) {
    expect(kWho, "$PMLR,IDGPS,,A,,,1.25,B\r");
    expect(kDone);
    EXPECT_TRUE(device.mlrIdent());
    EXPECT_EQ(connection.softwareVersion, "1.25");
    expect(kWho);
    expect(kWhoOld, "$INFO\r");
    EXPECT_FALSE(device.mlrIdent());
    EXPECT_EQ(connection.description, "GPS MLR");
}

TEST_F(MlrTest, DownloadsTrackBlocks) {
    const std::string wrongCount = block(3, trackRecord(1) + trackRecord(2));
    const std::string tooShort = block(2, std::string(20, 'x'));
    expectBlocks(kAskTracks, kFirstBlock + block(2, trackRecord(1) + trackRecord(2)) +
                                 block(0, "none") + kSeam + "hhhh\x05" + wrongCount + tooShort +
                                 block(1, trackRecord(2) + "more") + kClosing);
    EXPECT_TRUE(device.mlrGetTracks());
    const std::string point = "T;48.5;-1.5;39234.000";
    const Log events = {"StartDownload|T|8|Traces MLR SP",
                        "TrackData|1|" + point + "1;152;-1|D",
                        "TrackData|2|" + point + "2;152;0|D",
                        "GpsInfo|Bloc erroné 3",
                        "GpsInfo|Bloc erroné 4",
                        "TrackData|3|" + point + "2;152;-1|D",
                        "EndDownload|T"};
    EXPECT_EQ(takeLog(), blockDownload(kAskTracks, {"2", "2", "5", "7", "8"}) + events);
    const Log lines = host.traced();
    EXPECT_EQ(lines[0], "Get: " + kFirstBlock) << "the closing block is not traced";
    EXPECT_EQ(Log(lines.end() - 8, lines.end()),
              (Log{"-------bloc:1", " Paquet:1", " Paquet:2", "-------bloc:2", "-------bloc:3",
                   "-------bloc:4", "-------bloc:5", " Paquet:1"}));
}

TEST_F(MlrTest, DownloadsWaypointBlocks) {
    std::string home = wpl("HOME   MY HOUSE");
    std::string noChecksum = home.substr(0, home.find('*')) + "\r\n";
    std::string odd = "no sentence";
    home.resize(64, ' ');
    noChecksum.resize(64, '\0');
    odd.resize(64, '\0');
    expectBlocks(kAskWaypoints, kFirstBlock + block(3, home + odd + noChecksum) + kClosing);
    EXPECT_TRUE(device.mlrGetWaypoints());
    const Log events = {"StartDownload|W|3|Waypoints MLR SP",
                        "WayptData|1|" + pointLine("HOME  ", "MY HOUSE") + "|D",
                        "WayptData|2|" + pointLine("HOME  ", "MY HOUSE") + "|D", "EndDownload|W"};
    EXPECT_EQ(takeLog(), blockDownload(kAskWaypoints, {"3"}) + events);
}

TEST_F(MlrTest, ATransferWithoutRecordsHasNothing) {
    expectBlocks(kAskTracks, kFirstBlock + kClosing);
    EXPECT_FALSE(device.mlrGetTracks());
    EXPECT_EQ(takeLog(),
              blockDownload(kAskTracks, {}) + Log{"box information: Aucune trace dans ce GPS"});
}

TEST_F(MlrTest, ABlockDownloadWaitsForItsEndUntilTheHostStops) {
    mlr.sendsBlocks = true;
    expect(kAskTracks, kFirstBlock + block(1, trackRecord(1)));
    expect(kDone);
    host.onStopRequested = [this] { return host.elapsed() > 600; };
    EXPECT_FALSE(device.mlrGetTracks());
    EXPECT_EQ(takeLog(),
              (Log{writes(kAskTracks), "close", kProgress, kFast, "close", kSlow, writes(kDone)}))
        << "the speed is restored; a half transfer is not reported";
    EXPECT_LT(host.elapsed(), 601);
}

TEST_F(MlrTest, ASilentBlockDownloadHearsTheHostEverySecond) {
    mlr.sendsBlocks = true;
    expect(kAskTracks);
    host.onProcessEvents = [this] { port->close(); };
    EXPECT_FALSE(device.mlrGetTracks());
    EXPECT_NEAR(host.elapsed(), 1.1, 0.01);
}

TEST_F(MlrTest, AHandlerMayTakeThePortInTheMiddle) {
    const std::string one = block(1, trackRecord(1));
    const std::string stream = kFirstBlock + one + one + kClosing;
    // The first one comes while the port is closed for its change of speed.
    for (const auto& [nth, opens] : {std::pair{1, true}, {2, true}, {1, false}, {2, false}}) {
        SentenceStage stage;
        stage.mlr.sendsBlocks = true;
        PortLease itsLease(*stage.port);
        stage.expect(kAskTracks, stream);
        stage.events.when("GpsInfo", nth, [&, opens = opens] {
            stage.port->close();
            if (opens) {
                stage.port->open();
            }
        });
        Mlr itsDevice(stage.services, itsLease, stage.connection, stage.nmea, stage.mlr);
        EXPECT_FALSE(itsDevice.mlrGetTracks());
        EXPECT_EQ(stage.port->isOpen(), opens);
        EXPECT_EQ(stage.takeLog().back(), opens ? kFast : "close")
            << "the handler's: nothing is sent, opened or closed behind it";
    }
}

// Closed or pulled out beforehand, not to be opened at the raised speed, pulled out in the middle.
TEST_F(MlrTest, ABlockDownloadEndsWithItsPort) {
    mlr.sendsBlocks = true;
    expect(kAskTracks);
    line->openError = 13;
    EXPECT_FALSE(device.mlrGetTracks());
    const Log raised = {writes(kAskTracks), "close", kProgress, kFast};
    Log told = takeLog();
    ASSERT_EQ(told.size(), 5U);
    EXPECT_TRUE(told.back().starts_with("box critical: "));
    told.pop_back();
    EXPECT_EQ(told, raised);
    EXPECT_EQ(services.reports.transfer.ending, Ending::deviceGone);
    line->openError = 0;
    for (const auto download : {&Mlr::mlrGetTracks, &Mlr::mlrGetWaypoints}) {
        EXPECT_FALSE((device.*download)());
        EXPECT_EQ(takeLog(), Log{}) << "a closed port is not opened";
    }

    SentenceStage stage;
    stage.mlr.sendsBlocks = true;
    PortLease itsLease(*stage.port);
    stage.expect(kAskTracks, kFirstBlock + block(1, trackRecord(1)) + block(1, ""));
    stage.events.when("GpsInfo", 2, [&] { stage.line->unplug(); });
    Mlr itsDevice(stage.services, itsLease, stage.connection, stage.nmea, stage.mlr);
    EXPECT_FALSE(itsDevice.mlrGetTracks());
    EXPECT_EQ(stage.takeLog(), (raised + Log{kProgress + "1"s, "close", kSlow}));
    EXPECT_EQ(stage.services.reports.transfer.ending, Ending::deviceGone);
}

TEST_F(MlrTest, TheFirstPointBeginsASegmentWhateverItsNumber) {
    expectBlocks(kAskTracks, kFirstBlock + block(2, trackRecord(5) + trackRecord(6)) + kClosing);
    EXPECT_TRUE(device.mlrGetTracks());
    const Log blocks = takeLog();
    EXPECT_EQ(blocks[blocks.size() - 3], "TrackData|1|T;48.5;-1.5;39234.0005;152;-1|D");
    EXPECT_EQ(blocks[blocks.size() - 2], "TrackData|2|T;48.5;-1.5;39234.0006;152;0|D");
    mlr.sendsBlocks = false;
    speak(wpl("TRC007 D") + wpl("TRC008 D"));
    EXPECT_TRUE(device.mlrGetTracks());
    EXPECT_EQ(takeLog()[1], "TrackData|1|T;48.5;-1.5;39234.0007;0;-1|D");
}

TEST_F(MlrTest, TakesForTrackPointsOnlyNumberedOnes) {
    const std::string all = wpl("TROYES") + wpl("TRC") + wpl("TRCX1") + wpl("TRC001 C") +
                            wpl("TR0002 D") + wpl("TR") + wpl("TRX");
    speak(all);
    EXPECT_TRUE(device.mlrGetWaypoints());
    EXPECT_EQ(services.reports.transfer.transferred, 5);
    speak(all);
    EXPECT_TRUE(device.mlrGetTracks());
    EXPECT_EQ(services.reports.transfer.transferred, 2);
}

// What came is told; whether there was more nobody knows.
TEST_F(MlrTest, AListWhosePortIsGoneIsNotWhole) {
    speak(wpl("HOME"));
    events.when("WayptData", 1, [this] { line->unplug(); });
    EXPECT_FALSE(device.mlrGetWaypoints());
    EXPECT_EQ(takeLog().back(), "EndDownload|W");
    EXPECT_EQ(services.reports.transfer.ending, Ending::deviceGone);
}

TEST_F(MlrTest, ListensToWaypointSentences) {
    speak(wpl("HOME   MY HOUSE") + wpl("TRC001 C") + sentence("$GPRTE,1,1,c,1,HOME") +
              "$GPWPL,0011e99,N*00\r\n",
          9);
    speak(wpl("MILL"), 2.5);
    EXPECT_TRUE(device.mlrGetWaypoints());
    EXPECT_EQ(
        takeLog(),
        (Log{"StartDownload|W|100|---- W;id;lat;lon;comment;altitude;symbole;display opt. ------",
             "WayptData|1|" + pointLine("HOME  ", "MY HOUSE") + "|D",
             "WayptData|2|" + pointLine("MILL") + "|D", "EndDownload|W"}));
    EXPECT_NEAR(host.elapsed(), 11.5 + 3 + 0.8, 0.8) << "half a second, and a read";
    EXPECT_EQ(mlr.waypoints.count("HOME"), 1U) << "known without its blanks";
}

TEST_F(MlrTest, ReportsSentencesThatTheLineDamagedAndTakesThemAllTheSame) {
    std::string changed = wpl("A");
    changed[10] = '1';
    const std::string cut = wpl("B").substr(0, 20);
    speak("the rest of one before\r\n" + changed + wpl("C").substr(1) + cut + wpl("D"));
    const std::string bare = wpl("E");
    speak(bare.substr(0, bare.find('*')) + "\r\n");
    EXPECT_TRUE(device.mlrGetWaypoints());
    EXPECT_EQ(services.reports.transfer.transferred, 3);
    EXPECT_EQ(services.reports.transfer.damaged, 2);
    EXPECT_EQ(services.reports.transfer.wrongChecksum, 2);
}

TEST_F(MlrTest, ListensToTrackSentences) {
    speak(wpl("HOME") + wpl("TRC001 C") + wpl("TR0002 D"));
    EXPECT_TRUE(device.mlrGetTracks());
    EXPECT_EQ(takeLog(), (Log{"StartDownload|T|100|--- T;lat;lon;heure;altitude;debut -----",
                              "TrackData|1|T;48.5;-1.5;39234.0001;0;-1|D",
                              "TrackData|2|T;48.5;-1.5;39234.0002;0;0|D", "EndDownload|T"}));
}

TEST_F(MlrTest, ListensToRouteSentences) {
    speak(sentence("$GPRTE,2,1,c,4,HOME,MILL,LATER,NONE") + wpl("HOME") + wpl("LATER") +
          wpl("MILL   x") + sentence("$GPRTE,2,2,c,4,HOME") + sentence("$GPRTE,1,1,c,999,HOME"));
    EXPECT_TRUE(device.mlrGetRoutes());
    EXPECT_EQ(takeLog(), (Log{"StartDownload|R|100|Routes MLR", "RouteHeader|1|R;4;ROUTE 4|D",
                              "RouteData|2|" + pointLine("HOME") + "|D",
                              "RouteData|3|" + pointLine("MILL  ", "x") + "|D",
                              "RouteData|4|" + pointLine("LATER") + "|D",
                              "RouteData|5|" + pointLine("HOME") + "|D", "EndDownload|R"}));
    EXPECT_EQ(host.traced().back(), "Waypoint inconnu NONE");
}

TEST_F(MlrTest, TellsThatNothingCame) {
    EXPECT_FALSE(device.mlrGetWaypoints());
    EXPECT_NEAR(host.elapsed(), 10, 1.2);
    EXPECT_EQ(takeLog(), Log{}) << "nobody knows what a silent receiver holds";
    // Of lists that end it is known.
    speak(wpl("TRC001 C"));
    EXPECT_FALSE(device.mlrGetWaypoints());
    speak(wpl("HOME"));
    EXPECT_FALSE(device.mlrGetTracks());
    speak(sentence("$GPRTE,1,1,c,1"));
    EXPECT_FALSE(device.mlrGetRoutes());
    device.mlrSendTracks();
    EXPECT_EQ(takeLog(), (Log{"box information: Aucun Waypoint dans ce Gps",
                              "box information: Aucune trace dans ce GPS",
                              "box information: Pas de Routes dans ce GPS",
                              "box critical: Fonction non disponible sur les GPS MLR"}));
}

TEST_F(MlrTest, UploadsWaypointsAndRoutesWithoutAnEndCommand) {
    Waypoint point;
    point.SetAttributes("MLR", pointLine("PT1", "note"));
    const std::string written = wpl("PT1    note");
    expect(written);
    device.mlrSendWaypoints({.records = {point}});
    EXPECT_EQ(takeLog(), (Log{"StartUpload|W|1|Waypoints", writes(written),
                              "WayptData|1|" + pointLine("PT1", "note") + "|U", "EndUpload|W"}));
    Route route;
    route.SetAttributes("R;3;TOUR");
    route.AddWaypt(point);
    const std::string rte = sentence("$GPRTE,1,1,c,3,PT1");
    expect(written);
    expect(rte);
    device.mlrSendRoutes({.records = {route}});
    EXPECT_EQ(takeLog(), (Log{"StartUpload|R|2|Upload Routes", writes(written), writes(rte),
                              "RouteHeader|1|R;3;TOUR|U",
                              "RouteData|2|" + pointLine("PT1", "note") + "|U", "EndUpload|R"}));
    point.latitude = 1e9;
    EXPECT_THROW(device.mlrSendWaypoints({.records = {point}}), RunTimeError);
}

}  // namespace
}  // namespace marlune
