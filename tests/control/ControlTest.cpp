// The control as a host sees it: marks, ports, connecting, what unknown families answer.
#include <gtest/gtest.h>

#include "base/SystemError.h"
#include "control/DateFix.h"
#include "host/Services.h"
#include "support/Dialogue.h"

namespace marlune {
namespace {

const Step kNotAvailable = box(BoxIcon::critical, "Protocole non disponible pour ce GPS");
const Step kNoAnswer = box(BoxIcon::critical, "GPS éteint ou mal connecté");

std::string settingsFor(const std::string& mark) {
    Stage stage;
    stage.control().SetGpsMark(mark);
    stage.control().gpsConnect();
    return stage.port().openings.empty() ? "not opened" : stage.port().openings[0].settings;
}

TEST(Mark, ChoosesTheFamilyAndTheMagellanRate) {
    EXPECT_EQ(settingsFor("grm"), "baud=9600 parity=n data=8 stop=1");
    EXPECT_EQ(settingsFor("MLR"), "baud=4800 parity=n data=8 stop=2");
    const std::vector<std::pair<const char*, std::string>> rates = {
        {"MGN", "4800"},
        {"mgn;9600", "9600"},
        {"MGN;19200.9", "19200"},
        {"MGN;1000", "4800"},
        {"MGN;-9600", "4800"},
        {"MGN;", "4800"},
        {"MGN;abc", "4800"},
        {"MGN;1e99", "4800"},
        {"MGN;38400;9600", "38400"},
        {"MGN;99999999999", "4800"},
    };
    for (const auto& [mark, rate] : rates) {
        EXPECT_EQ(settingsFor(mark), "baud=" + rate + " parity=n data=8 stop=1") << mark;
    }
}

TEST(Mark, ForgetsTheRateWhenItIsGivenAgainWithout) {
    Stage stage;
    stage.control().SetGpsMark("MGN;9600");
    stage.control().SetGpsMark("MGN");
    stage.control().gpsConnect();
    EXPECT_EQ(stage.port().openings.at(0).settings, "baud=4800 parity=n data=8 stop=1");
}

TEST(Control, AnUnknownFamilyConnectsAndOffersNothing) {
    Stage stage;
    stage.control().SetGpsMark("XYZ");
    EXPECT_TRUE(stage.control().gpsConnect());
    stage.play({kNotAvailable, kNotAvailable, kNotAvailable,
                box(BoxIcon::exclamation, "Protocole non supporté par ce GPS"), kNotAvailable,
                kNotAvailable, kNotAvailable},
               [&] {
                   EXPECT_FALSE(stage.control().getWaypts());
                   EXPECT_FALSE(stage.control().getTracks());
                   EXPECT_FALSE(stage.control().GetRoutes());
                   EXPECT_FALSE(stage.control().getProximites());
                   EXPECT_FALSE(stage.control().StartPvtData());
                   EXPECT_EQ(stage.control().GetTime(), 0);
                   EXPECT_EQ(stage.control().getPosition(), "");
                   stage.control().StopPvtData();
                   stage.control().StopTransfert();
               });
    EXPECT_EQ(stage.control().getProtocoles(), "");
    EXPECT_EQ(stage.control().getIdent(), "Marlune Version 1.0.0 -  GPSId:  Version:  - ");
}

TEST(Control, SentenceFamiliesOfferWhatTheyHave) {
    Stage stage;
    const Script versions = {sendsText("$PMGNCMD,VERSION*28\r\n"),
                             answersText("$PMGNVER,37,3.14, MAP 330 *2B\r\n"),
                             sendsText("$PMGNCSM,2B*15\r\n"), sendsText("$PMGNCMD,HANDOFF*3E\r\n")};
    stage.control().SetGpsMark("MGN");
    stage.play(versions, [&] { EXPECT_TRUE(stage.control().gpsConnect()); });
    EXPECT_EQ(stage.control().getProtocoles(), "Protocole NMEA propriétaire MAGELLAN");
    // With the port open the receiver is asked again.
    stage.play(versions, [&] {
        EXPECT_EQ(stage.control().getIdent(),
                  "Marlune Version 1.0.0 -  GPSId: 37 Version: 3.14 -  MAP 330 ");
    });
    stage.play({kNotAvailable, kNotAvailable,
                box(BoxIcon::exclamation, "Protocole non supporté par ce GPS")},
               [&] {
                   EXPECT_EQ(stage.control().GetTime(), 0);
                   EXPECT_EQ(stage.control().getPosition(), "");
                   EXPECT_FALSE(stage.control().getProximites());
               });
    stage.control().SetGpsMark("MLR");
    EXPECT_EQ(stage.control().getProtocoles(), "Protocole NMEA propriétaire MLR");
    stage.play({kNotAvailable}, [&] { EXPECT_FALSE(stage.control().StartPvtData()); });
}

TEST(Control, DisconnectsWhileADownloadHasThePortClosed) {
    Stage stage;
    stage.control().SetGpsMark("MLR");
    stage.play(
        {sendsText("$PMLR,26,01,01,0339\r\n"), answersText("$PMLR,IDGPS,x,SP24,a,b,1.20,X*00\r\n"),
         sendsText("$PMLR,06,00,02A9\r\n")},
        [&] { EXPECT_TRUE(stage.control().gpsConnect()); });
    stage.events.when("GpsInfo", 1, [&] { stage.control().gpsDisconnect(); });
    stage.play({sendsText("$PMLR,24,02,0101,0399\r\n"), event("GpsInfo|Download en cours ....")},
               [&] { EXPECT_FALSE(stage.control().getTracks()); });
    EXPECT_FALSE(stage.port().isOpen());
    EXPECT_EQ(stage.port().openings.size(), 1U);
}

TEST(Control, TellsAPortThatDoesNotOpenAndStillTriesToIdentify) {
    Stage stage;
    stage.host.ports[1] = "";
    stage.port().openError = 2;  // no such file
    stage.play({box(BoxIcon::critical, systemErrorText(2)),
                box(BoxIcon::critical, "Connexion Impossible"), kNoAnswer},
               [&] { EXPECT_FALSE(stage.control().gpsConnect()); });
    // The next attempt works.
    stage.port().openError = 0;
    stage.connectGarmin("A100 D108");
}

TEST(Control, ReportsSettingsThatDoNotApply) {
    Stage stage;
    stage.port().settingsError = 22;
    stage.play({box(BoxIcon::critical, "Connexion Impossible"), kNoAnswer},
               [&] { EXPECT_FALSE(stage.control().gpsConnect()); });
}

// Another code with these letters takes the same transfers, but is no unit that announced anything.
TEST(Control, TellsAUnitsProtocolsUnderItsOwnCodeOnly) {
    Stage stage;
    stage.connectGarmin("A100 D108");
    stage.control().SetGpsMark("XGRM");
    EXPECT_EQ(stage.control().getProtocoles(), "");
    stage.control().SetGpsMark("GRM_USB");
    EXPECT_EQ(stage.control().getProtocoles(), "A100 D108");
}

TEST(Control, ConnectsAgainWithoutDisconnecting) {
    Stage stage;
    stage.host.createTraceFolder();
    stage.control().SetDebug("ON");
    stage.connectGarmin("A100 D108");
    EXPECT_EQ(stage.host.traced().back(), "A100 D108");
    stage.connectGarmin("A100 D100");
    EXPECT_EQ(stage.control().getProtocoles(), "A100 D100");
    EXPECT_EQ(stage.port().closings, 1);
    EXPECT_EQ(stage.host.traceText().find("A100 D108"), std::string::npos)
        << "every connection begins the trace anew";
}

TEST(Control, SwitchesDebuggingByExactlyOneWord) {
    for (const auto& [value, on] : {std::pair{"oN", true}, {"ONE", false}, {"", false}}) {
        Stage stage;
        stage.host.createTraceFolder();
        stage.control().SetDebug(value);
        stage.control().gpsConnect();
        EXPECT_EQ(!stage.host.traceText().empty(), on) << value;
    }
}

TEST(Control, EmptiesTheQueuesAndClosesWhatItOpened) {
    Stage stage;
    stage.connectGarmin("A100 D108");
    ScriptedPort& port = stage.port();
    const int purges = port.purges;
    EXPECT_FALSE(stage.control().ResetComBuffers()) << "success is never reported";
    EXPECT_EQ(port.purges, purges + 1);
    stage.control().gpsDisconnect();
    EXPECT_FALSE(port.isOpen());
    EXPECT_EQ(port.settlings, 1) << "the unit may still answer";
    stage.control().gpsDisconnect();
    EXPECT_EQ(port.closings, 1);
}

TEST(Control, HearsTheUnitOutWhenItIsLetGo) {
    Stage stage;
    stage.connectGarmin("A100 D108");
    ScriptedPort& port = stage.port();
    int settlings = 0;
    port.observer.close = [&] { settlings = port.settlings; };
    stage.destroyControl();
    EXPECT_EQ(settlings, 1) << "its last words would meet the next connection";
}

// Whatever comes after the last look, and nothing twice.
TEST(DateFix, MovesWhatComes) {
    constexpr double kOld = 936000000;  // 1999
    constexpr double kReference = kOld + 1024 * 7 * 86400.0 + 86400;
    const auto pointOf = [](double time) {
        TrackPointRecord point;
        point.time = time;
        return point;
    };
    DateFix dates;
    Records records;
    records.tracks.resize(1);
    records.tracks[0].points = {pointOf(kOld)};
    dates.apply(records, 1);
    EXPECT_EQ(dates.moved(), 0) << "nobody asked for it";
    dates.setReference(kReference);
    for (int points = 2; points < 4; ++points) {
        records.tracks.back().points.push_back(pointOf(kOld));
        dates.apply(records, 1);
        dates.apply(records, 1);
        EXPECT_EQ(dates.moved(), points);
    }
    records.tracks.push_back(records.tracks[0]);
    records.tracks[1].points[0] = pointOf(kOld);
    records.waypoints.resize(1);
    records.waypoints[0].time = kOld;
    dates.apply(records, 1);
    EXPECT_EQ(dates.moved(), 5);
    EXPECT_EQ(records.tracks[1].points[0].time, kReference - 86400);
    records.tracks = {TrackRecord{"", {}, {}, {pointOf(kOld), pointOf(kOld)}}};
    dates.apply(records, 2);
    EXPECT_EQ(dates.moved(), 2);
    EXPECT_EQ(records.tracks[0].points[0].time, kReference - 86400);
}

}  // namespace
}  // namespace marlune
