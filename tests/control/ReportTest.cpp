// How transfers went and what they brought, as values: the endings and counts of every family.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <sstream>

#include "garmin/GarminRecords.h"
#include "garmin/records/Waypoint.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

const std::string kTags = "A100 D100 A201 D202 D210 A301 D310 D300 A600 D600 A800 D800";

// "interrupted pid=21 announced=2 transferred=1": counts of 0 are left out.
std::string words(const TransferReport& report) {
    static constexpr std::array kEndings = {
        "complete",     "nothingThere", "interrupted", "endMissing",    "cancelled",
        "disconnected", "deviceGone",   "refused",     "protocolError", "notOffered",
        "fileError",    "unsendable",   "noSession",   "needsWaypoints"};
    const std::pair<const char*, int> counts[] = {{"pid", report.pid},
                                                  {"announced", report.announced.value_or(0)},
                                                  {"transferred", report.transferred},
                                                  {"undecodable", report.undecodable},
                                                  {"wrongChecksum", report.wrongChecksum},
                                                  {"unknown", report.unknown},
                                                  {"positionless", report.positionless},
                                                  {"duplicates", report.duplicates},
                                                  {"oversized", report.oversized},
                                                  {"damaged", report.damaged},
                                                  {"acknowledged", report.acknowledged},
                                                  {"unacknowledged", report.unacknowledged},
                                                  {"leftOut", report.leftOut},
                                                  {"firstLeftOut", report.firstLeftOut}};
    std::ostringstream text;
    text << kEndings.at(static_cast<std::size_t>(report.ending));
    for (const auto& [name, count] : counts) {
        if (count != 0) {
            text << ' ' << name << '=' << count;
        }
    }
    return text.str();
}

using Call = std::function<void(Stage&)>;

// What the device answers, whatever the control tells meanwhile.
std::string reportOf(Stage& stage, const Script& script, const Call& call) {
    stage.port().play(serialTurnsOf(script));
    call(stage);
    return words(stage.control().lastTransfer());
}

const Call kWaypoints = [](Stage& stage) { stage.control().getWaypts(); };
const Call kTracks = [](Stage& stage) { stage.control().getTracks(); };

Call when(const char* event, const Call& act, const Call& call) {
    return [=](Stage& stage) {
        stage.events.when(event, 1, [&stage, act] { act(stage); });
        call(stage);
    };
}

Script counted(std::uint8_t command, std::uint8_t count) {
    return {sends(10, {command, 0}), answers(6), answers(27, {count, 0}), acks(27)};
}
Script record(std::uint8_t pid, const Bytes& data) {
    return {answers(pid, data), acks(pid)};
}
const Script kPoint = record(35, d100("PT1"));
const Script kEnd = {answers(12), acks(12)};

struct Case {
    Script script;
    Call call;
    std::string report;
};

TEST(Report, GarminDownloads) {
    Bytes wrong = garminFrame(35, d100("PT1"));
    ++wrong[wrong.size() - 3];
    const Script damaged = {answersBytes(wrong), acks(35)};
    const Call gpsDisconnect = [](Stage& stage) { stage.control().gpsDisconnect(); };
    const Call StopTransfert = [](Stage& stage) { stage.control().StopTransfert(); };
    const Call stop = [](Stage& stage) { stage.host.stop = true; };
    const Call unplug = [](Stage& stage) { stage.port().unplug(); };
    const Case cases[] = {
        {counted(7, 2) + kPoint + kPoint + kEnd, kWaypoints, "complete announced=2 transferred=2"},
        {counted(7, 0), kWaypoints, "nothingThere"},
        {{sends(10, {7, 0}), answers(21)}, kWaypoints, "refused pid=21"},
        {Script{sends(10, {7, 0})} + Script(6, answers(255)), kWaypoints, "protocolError pid=255"},
        {{sends(10, {7, 0})}, kWaypoints, "interrupted"},
        {counted(6, 3) + record(34, d300(true)), kTracks, "interrupted announced=3 transferred=1"},
        {counted(7, 1) + kPoint + Script{answers(114)}, kWaypoints,
         "endMissing announced=1 transferred=1 unknown=1"},
        {counted(7, 3) + damaged + record(35, {1}) + kPoint + kEnd, kWaypoints,
         "complete announced=3 transferred=2 undecodable=1 damaged=1"},
        {counted(6, 3) + record(99, join({{1, 5}, text0("A")})) +
             record(34, d300WithoutPosition()) + record(34, d300(true)) + kEnd,
         kTracks, "complete announced=3 transferred=2 positionless=1"},
        {counted(7, 2) + Script{answers(35, d100("A")), sends(10, {0, 0}), acks(35)},
         when("WayptData", StopTransfert, kWaypoints), "cancelled announced=2 transferred=1"},
        {counted(7, 2) + kPoint, when("WayptData", stop, kWaypoints),
         "cancelled announced=2 transferred=1"},
        {counted(7, 2) + Script{answers(35, d100("A")), sends(10, {0, 0})},
         when("WayptData", gpsDisconnect, kWaypoints), "disconnected announced=2 transferred=1"},
        {counted(7, 2) + Script{answers(35, d100("A"))}, when("WayptData", unplug, kWaypoints),
         "deviceGone announced=2 transferred=1"},
        {{}, [](Stage& stage) { stage.control().getProximites(); }, "notOffered"},
        {{sends(10, {5, 0}), answers(6), answers(14, {1})},
         [](Stage& stage) { stage.control().GetTime(); },
         "protocolError pid=14"},
        {{sends(10, {49, 0}), answers(6), answers(51, {1})},
         [](Stage& stage) { stage.control().StartPvtData(); },
         "interrupted undecodable=1"},
    };
    for (const auto& [script, call, report] : cases) {
        Stage stage;
        stage.connectGarmin(kTags);
        EXPECT_EQ(reportOf(stage, script, call), report);
    }
    Stage usb(Line::usbBulk);
    usb.connectGarmin(kTags);
    usb.usb().answersSessions = false;
    kWaypoints(usb);
    EXPECT_EQ(words(usb.control().lastTransfer()), "noSession");
}

TEST(Report, GarminUploads) {
    TempFolder folder;
    const auto send = [&](const std::string& text) -> Call {
        const std::string path = folder.write(std::to_string(text.size()) + ".txt", text);
        return [path](Stage& stage) { stage.control().SendWaypts(path); };
    };
    const std::string two = "W;PT1;1;2;;0;18;0\nW;PT2;1;2;;0;18;0\n";
    Waypoint first;
    first.SetAttributes("D100", "W;PT1;1;2;;0;18;0");
    Waypoint second;
    second.SetAttributes("D100", "W;PT2;1;2;;0;18;0");
    const Script opened = {sends(27, {2, 0}), answers(6)};
    const Script one = opened + Script{sends(35, first.Coder("D100")), answers(6)};
    const Step next = sends(35, second.Coder("D100"));
    const Case cases[] = {
        {one + Script{next, answers(6), sends(12, {0})}, send(two),
         "complete announced=2 transferred=2 acknowledged=2"},
        {one + Script{next, sends(12, {0})}, send(two),
         "complete announced=2 transferred=2 acknowledged=1 unacknowledged=1"},
        {one + Script{next, answers(21), sends(12, {0})}, send(two),
         "refused pid=21 announced=2 transferred=1 acknowledged=1 unacknowledged=1"},
        {{sends(27, {2, 0}), answers(21)}, send(two), "refused pid=21 announced=2"},
        {one + Script{next, answers(6), sends(12, {0})},
         send(two + "remark\nW;too short\nW;PT4;1;2;;0;18;0\n"),
         "complete announced=2 transferred=2 acknowledged=2 leftOut=2 firstLeftOut=4"},
        {{}, send("nothing here\n"), "nothingThere"},
        {{}, send("W;x\n"), "fileError leftOut=1 firstLeftOut=1"},
        {{}, [](Stage& stage) { stage.control().SendTraces("/nowhere/at.all"); }, "fileError"},
    };
    for (const auto& [script, call, report] : cases) {
        Stage stage;
        stage.connectGarmin(kTags);
        EXPECT_EQ(reportOf(stage, script, call), report);
    }
    Stage stage;
    stage.connectGarmin("A100 D154");
    EXPECT_EQ(reportOf(stage, opened, send(two)), "unsendable announced=2");
}

TEST(Report, Connections) {
    using Outcome = ConnectionOutcome;
    const Script asked = {sends(10, {0, 0}), sends(254, {0})};
    const Script product =
        asked + Script{answers(6), answers(255, productData(77, 0, "A")), sends(6, {255, 0})};
    const Call none = [](Stage&) {};
    const auto mark = [](const char* code) -> Call {
        return [code](Stage& stage) { stage.control().SetGpsMark(code); };
    };
    const std::tuple<Script, Call, Outcome, std::uint16_t> cases[] = {
        {product + Script{answers(253, protocolArray("A100"))}, none, Outcome::identified, 0},
        {product + Script{answers(253)}, none, Outcome::protocolError, 253},
        {asked, none, Outcome::silent, 0},
        {asked + Script{answers(21)}, none, Outcome::protocolError, 21},
        {asked + Script{answers(6), answers(12)}, none, Outcome::protocolError, 12},
        {asked + Script{answersText("$GPGGA,1*00\r\n")}, none, Outcome::otherLanguage, 0},
        {asked, [](Stage& stage) { stage.port().openError = 2; }, Outcome::notOpened, 0},
        {asked, [](Stage& stage) { stage.host.stop = true; }, Outcome::abandoned, 0},
        {{}, mark("MGN"), Outcome::silent, 0},
        {{}, mark("XYZ"), Outcome::opened, 0},
        {{},
         [](Stage& stage) {
             stage.control().SetGpsMark("GRM_USB");
             stage.usb().path.clear();
         },
         Outcome::notOpened,
         0},
    };
    int number = 0;
    for (const auto& [script, arrange, outcome, pid] : cases) {
        Stage stage;
        arrange(stage);
        stage.port().play(serialTurnsOf(script));
        ++number;
        const bool connected = stage.control().gpsConnect();
        const ConnectionReport& report = stage.control().lastConnection();
        EXPECT_EQ(report.outcome, outcome) << number;
        EXPECT_EQ(report.pid, pid) << number;
        EXPECT_EQ(report.isConnected(), connected) << number;
        EXPECT_EQ(report.systemError != 0, stage.port().openError != 0) << number;
    }
}

std::string nmea(const std::string& body) {
    unsigned sum = 0;
    for (const char c : body.substr(1)) {
        sum ^= static_cast<unsigned char>(c);
    }
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    return body + '*' + kDigits[sum / 16] + kDigits[sum % 16] + "\r\n";
}
std::string wpl(const std::string& name) {
    return nmea("$PMGNWPL,4807.0381,N,01131.0009,E,152,F," + name + ",,a");
}

void connectMagellan(Stage& stage) {
    stage.control().SetGpsMark("MGN");
    stage.play({sendsText("$PMGNCMD,VERSION*28\r\n"), answersText("$PMGNVER,37,3.14,MAP*2B\r\n"),
                sendsText("$PMGNCSM,2B*15\r\n"), sendsText("$PMGNCMD,HANDOFF*3E\r\n")},
               [&] { EXPECT_TRUE(stage.control().gpsConnect()); });
}

Script listed(const std::string& command, const std::string& answer) {
    return {sendsText("$PMGNCMD,STOP*6A\r\n"), sendsText(command), answersText(answer)};
}
const std::string kAskWaypoints = "$PMGNCMD,WAYPOINT*71\r\n";
const std::string kEndOfList = "$PMGNCMD,END*3D\r\n";

TEST(Report, Magellan) {
    const std::string overflow = nmea("$PMGNWPL,4807.038,N,01131.000,E,1e40,M,BIG,,a");
    const std::string garbled = "$PMGNWPL,4807.038,N,01131.000,E,152,M,BAD,,a*00\r\n";
    const Case cases[] = {
        {listed(kAskWaypoints, wpl("A") + wpl("A") + overflow + garbled + kEndOfList), kWaypoints,
         "complete transferred=1 undecodable=1 wrongChecksum=1 duplicates=1"},
        {listed(kAskWaypoints, kEndOfList), kWaypoints, "nothingThere"},
        {listed(kAskWaypoints, wpl("A") + "$PMGNCMD,UNABLE*7C\r\n"), kWaypoints,
         "refused transferred=1"},
        {listed(kAskWaypoints, wpl("A")), kWaypoints, "interrupted transferred=1"},
        {{}, [](Stage& stage) { stage.control().GetRoutes(); }, "needsWaypoints"},
        {{}, [](Stage& stage) { stage.control().GetTime(); }, "notOffered"},
    };
    for (const auto& [script, call, report] : cases) {
        Stage stage;
        connectMagellan(stage);
        EXPECT_EQ(reportOf(stage, script, call), report);
    }
}

TEST(Report, Mlr) {
    using namespace std::string_literals;
    Stage stage;
    stage.control().SetGpsMark("MLR");
    stage.play(
        {sendsText("$PMLR,26,01,01,0339\r\n"), answersText("$PMLR,IDGPS,x,SP24,a,b,1.20,X*00\r\n"),
         sendsText("$PMLR,06,00,02A9\r\n")},
        [&] { EXPECT_TRUE(stage.control().gpsConnect()); });
    const std::string point = "\0\1\x00\x2C\x67\x30\xFF\xFE\xA0\x70\x00\x98\0\0\0\0"s;
    const auto blocks = [&](const std::string& records) -> Script {
        return {sendsText("$PMLR,24,02,0101,0399\r\n"),
                answersText("\x8Bhhhh\0DEBUT\r\n\x8Bhhhh"s + records + "\r\n\x8Bhhhh\0FIN\r\n"s),
                sendsText("$PMLR,06,00,02A9\r\n")};
    };
    EXPECT_EQ(reportOf(stage, blocks("\2" + point + point), kTracks),
              "complete announced=2 transferred=2");
    EXPECT_FALSE(stage.control().records().tracks.at(0).points.at(0).time) << "it has none";
    EXPECT_EQ(reportOf(stage, blocks("\2" + point + "x"), kTracks),
              "complete announced=2 oversized=2");
    EXPECT_EQ(reportOf(stage, {}, [](Stage& each) { each.control().SendTraces("none"); }),
              "fileError");
    stage.control().gpsDisconnect();
    EXPECT_EQ(reportOf(stage, {}, kTracks), "deviceGone");
}

// The records at the precision of what came; an event's is the last one when it is raised.

TEST(Records, OfAGarminUnit) {
    Stage stage;
    stage.connectGarmin("A100 D108 A301 D310 D301 A800 D800");
    Bytes d108 = join({{0, 0, 0, 96, 18, 0},
                       Bytes(18, 0),
                       k45,
                       {1, 0, 0, 0x20},
                       {0x40, 0x20, 0x18, 0x43},
                       {0, 0, 0x20, 0x41},
                       {0, 0, 0x48, 0x42},
                       Bytes(4, 0),
                       text0("HOME"),
                       text0("NOTE"),
                       Bytes(4, 0)});
    std::string name;
    stage.events.when("WayptData", 1,
                      [&] { name = stage.control().records().waypoints.back().name; });
    reportOf(stage, counted(7, 1) + record(35, d108) + kEnd, kWaypoints);
    EXPECT_EQ(name, "HOME");
    const WaypointRecord& home = stage.control().records().waypoints.at(0);
    EXPECT_NEAR(home.longitude, 0x20000001 * (180.0 / 0x80000000U), 1e-12);
    EXPECT_EQ(home.altitude, 0x1.30408p7F);
    EXPECT_EQ(home.depth, 10.0F);
    EXPECT_EQ(home.proximity, 50.0F);
    EXPECT_EQ(home.temperature, std::nullopt);

    Bytes d800(64, 0);
    const auto put = [&](std::size_t at, auto value) {
        std::memcpy(d800.data() + at, &value, sizeof value);
    };
    put(16, std::int16_t{3});
    put(26, 0.5);
    put(34, -0.25);
    put(42, 1.5F);
    put(46, -2.5F);
    put(50, 0.25F);
    stage.events.when("PvtData", 1, [&] { stage.control().StopPvtData(); });
    reportOf(stage, {sends(10, {49, 0}), answers(6), answers(51, d800), sends(10, {50, 0})},
             [](Stage& each) { each.control().StartPvtData(); });
    const FixRecord& fix = stage.control().records().fix.value();
    EXPECT_NEAR(fix.latitude, 28.64788975654116, 1e-12);
    EXPECT_NEAR(fix.longitude, -14.32394487827058, 1e-12);
    EXPECT_EQ(fix.quality, 3);
    EXPECT_EQ(fix.eastSpeed, 1.5F);
    EXPECT_EQ(fix.northSpeed, -2.5F);
    EXPECT_EQ(fix.upSpeed, 0.25F);
}

TEST(Records, OfAlarmZones) {
    for (const auto& [tags, data] :
         {std::pair{"A100 D100 A400 D400", join({d100("PX"), {0, 0, 0x20, 0x41}})},
          {"A100 D103 A400 D403", join({d100("PX"), {0, 0}, {0, 0, 0x20, 0x41}})},
          {"A100 D107 A400 D107", join({d100("PX"), {0, 0}, {0, 0, 0x20, 0x41}, {0}})}}) {
        Stage stage;
        stage.connectGarmin(tags);
        const Call get = [](Stage& each) { each.control().getProximites(); };
        EXPECT_EQ(reportOf(stage, counted(3, 1) + record(19, data), get),
                  "complete announced=1 transferred=1");
        EXPECT_EQ(stage.control().records().proximities.at(0).proximity, 10.0F) << tags;
    }
}

TEST(Records, OfSentencesAsTheySayIt) {
    Stage stage;
    connectMagellan(stage);
    stage.events.when("WayptData", 2,
                      [&] { EXPECT_EQ(stage.control().records().waypoints.back().name, "B"); });
    reportOf(stage, listed(kAskWaypoints, wpl("A") + wpl("B") + kEndOfList), kWaypoints);
    const WaypointRecord& point = stage.control().records().waypoints.at(0);
    EXPECT_NEAR(point.latitude, 48 + 7.0381 / 60, 1e-12);
    EXPECT_NEAR(point.longitude, 11 + 31.0009 / 60, 1e-12);
    EXPECT_NEAR(point.altitude.value(), 152 * 0.3048, 1e-5);
    EXPECT_EQ(point.symbol, std::nullopt);

    reportOf(stage,
             listed("$PMGNCMD,ROUTE*2B\r\n", nmea("$PMGNRTE,1,1,c,1,TOUR,A,a,B,a") + kEndOfList),
             [](Stage& each) { each.control().GetRoutes(); });
    EXPECT_NEAR(stage.control().records().routes.at(0).points.at(1).point.latitude,
                48 + 7.0381 / 60, 1e-12);

    reportOf(stage,
             listed("$PMGNCMD,TRACK,2*23\r\n",
                    nmea("$PMGNTRK,4807.0381,N,01131.0009,E,152,M,123519.25,A,LOOP,150325") +
                        nmea("$PMGNTRK,4807.0381,N,01131.0009,E,152,M,123519.25,A") + kEndOfList),
             kTracks);
    const TrackRecord& track = stage.control().records().tracks.at(0);
    EXPECT_EQ(track.name, "LOOP");
    EXPECT_NEAR(track.points.at(0).latitude, 48 + 7.0381 / 60, 1e-12);
    EXPECT_EQ(track.points[0].time, 1742042119.25);
    EXPECT_TRUE(track.points[0].segmentStart);
    EXPECT_EQ(track.points.at(1).time, std::nullopt) << "a day that nobody told";
}

}  // namespace
}  // namespace marlune
