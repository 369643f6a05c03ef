// What the Garmin services do over USB in their own way; what they do as on a serial line is played
// by the Garmin suites over every line.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <sstream>

#include "garmin/GarminRecords.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

const std::string kTags = "A100 D100 A200 D201 A300 D300 A400 D400 A600 D600 A700 D700 A800 D800";
const std::string kWaypointsHeader =
    "---- W;id;lat;lon;comment;altitude;symbole;display opt. ------";
const Step kNoSession = box(BoxIcon::critical, "Problème Ouverture de session");
const Step kNoPosition = box(BoxIcon::none, "Position non disponible");
const Bytes kDataAvailable = ScriptedUsb::packet(0, 2);
const Bytes kStarted = ScriptedUsb::packet(0, 6, {1, 2, 3, 4});

Bytes application(std::uint16_t id, const Bytes& data = {}) {
    return ScriptedUsb::packet(20, id, data);
}

class UsbTransferTest : public testing::Test, protected Stage {
protected:
    UsbTransferTest() : Stage(Line::usbInterrupt) {
        host.createTraceFolder();
        control().SetDebug("ON");
    }

    // The trace's lines without their numbers.
    std::vector<std::string> traced() {
        std::vector<std::string> texts;
        std::istringstream lines(host.traceText());
        for (std::string line; std::getline(lines, line);) {
            texts.push_back(line.substr(line.find(':') + 1, line.size() - line.find(':') - 2));
        }
        return texts;
    }
    bool hasTraced(const std::string& start) {
        const auto lines = traced();
        return std::any_of(lines.begin(), lines.end(),
                           [&](const std::string& line) { return line.starts_with(start); });
    }
    std::string file(const std::string& text) { return folder_.write("upload.txt", text); }
    void failsToConnect(const Script& script) {
        play(script, [this] { EXPECT_FALSE(control().gpsConnect()); });
        EXPECT_FALSE(usb().isOpen());
    }
    void getWaypts(const Script& script, bool result) {
        play(script, [&] { EXPECT_EQ(control().getWaypts(), result); });
    }

    TempFolder folder_;
};

TEST_F(UsbTransferTest, TracesTheDeviceAndWhatIdentifiesIt) {
    connectGarmin("A100 D108");
    EXPECT_EQ(control().getIdent(), "Marlune Version 1.0.0 -  GPSId: 77 Version: 2.8 - eTrex");
    EXPECT_EQ(control().getProtocoles(), "A100 D108");
    const auto lines = traced();
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(lines[1], "Clef USB usb:001:004");
    EXPECT_EQ(lines[2], "Ouverture Fichier USB OK");
    EXPECT_TRUE(hasTraced("Send  20 0 0 0 254 0 0 0 0 0 0 0"));
    EXPECT_TRUE(hasTraced("Protocole trouv\xE9 ...."));
    play({}, [this] { control().gpsDisconnect(); });
    EXPECT_FALSE(usb().isOpen());
    EXPECT_TRUE(port().openings.empty());
}

TEST_F(UsbTransferTest, TakesTheProductTableForAUnitThatAnnouncesNothing) {
    play({sends(254), answers(255, productData(36, 310, "GPS 126")), answers(248, {1}),
          answers(248, {2})},
         [&] { EXPECT_TRUE(control().gpsConnect()); });
    EXPECT_TRUE(control().getProtocoles().starts_with("P000 L001 A010 A100 D152"));
    EXPECT_TRUE(hasTraced("Paquet 248 ....."));
}

TEST_F(UsbTransferTest, TellsAUnitThatDoesNotIdentifyItself) {
    const Step notIdentified = box(BoxIcon::critical, "GPS éteint ou mal connecté");
    failsToConnect({sends(254), notIdentified});
    failsToConnect({sends(254), answers(253, protocolArray("A100")), notIdentified});
    usb().onWrite = nullptr;
    usb().answersSessions = false;
    failsToConnect({kNoSession});
    usb().opens = false;
    failsToConnect({});
    EXPECT_TRUE(hasTraced("Clef USB usb:001:004"));
    EXPECT_TRUE(hasTraced("Fichier USB non Trouv\xE9"));
    usb().path.clear();
    failsToConnect({});
    EXPECT_TRUE(hasTraced("Clef de Registre USB GARMIN non trouv\xE9"));
    // And is found again.
    usb().path = "usb:001:005";
    usb().opens = usb().answersSessions = true;
    usb().play({{.write = application(254),
                 .interrupt = {application(255, productData(77, 280, "eTrex"))}}});
    EXPECT_TRUE(control().gpsConnect());
}

TEST_F(UsbTransferTest, BecomesADriveAndADeviceAgain) {
    (void)folder_.write("GARMIN/Garmin/GarminDevice.xml",
                        "<Device><Description>Unit</Description><MassStorageMode><DataType>"
                        "<Name>GPSData</Name><File><Location><Path>GPX</Path></Location>"
                        "<TransferDirection>OutputFromUnit</TransferDirection></File>"
                        "</DataType></MassStorageMode></Device>");
    (void)folder_.write("GARMIN/GPX/a.gpx", "<gpx><wpt lat='1' lon='2'><name>A</name></wpt></gpx>");
    Drive drive;
    drive.isReady = true;
    drive.rootFolder = (folder_.path() / "GARMIN").string();
    host.driveList = {drive};
    usb().path.clear();
    play({}, [&] { EXPECT_TRUE(control().gpsConnect()); });
    EXPECT_TRUE(hasTraced("Ouverture Fichier USB GPX OK"));
    EXPECT_EQ(control().getProtocoles(), "Donnees au format GPX - Unit");
    const Script waypoints = {event("StartDownload|W|1|" + kWaypointsHeader),
                              event("WayptData|1|W;A;1;2;;0;18;0|D"), event("EndDownload|W")};
    getWaypts(waypoints, true);
    const Step notAvailable = box(BoxIcon::critical, "Protocole non disponible pour ce GPS");
    play({notAvailable, notAvailable, notAvailable,
          box(BoxIcon::exclamation, "Protocole non supporté par ce GPS")},
         [&] {
             EXPECT_EQ(control().GetTime(), 0);
             EXPECT_EQ(control().getPosition(), "");
             EXPECT_FALSE(control().StartPvtData());
             EXPECT_FALSE(control().getProximites());
         });
    // The drive's folder for uploads is not named: the system's words, and no event.
    play({box(BoxIcon::critical,
              std::make_error_code(std::errc::no_such_file_or_directory).message())},
         [&] { EXPECT_FALSE(control().SendWaypts(file("W;A;1;2;;0;18;0\n"))); });

    events.when("WayptData", 1, [this] { control().gpsDisconnect(); });
    getWaypts(waypoints, true);
    usb().path = "usb:001:004";
    connectGarmin(kTags);
    EXPECT_EQ(control().getProtocoles(), kTags);
}

TEST_F(UsbTransferTest, EveryServiceWantsASession) {
    connectGarmin(kTags);
    const int sessions = usb().sessions;
    getWaypts({sends(10, {7, 0}), answers(27, {0, 0}),
               box(BoxIcon::information, "Aucun Waypoint dans ce Gps")},
              false);
    EXPECT_EQ(usb().sessions, sessions + 1);
    usb().onWrite = nullptr;
    usb().answersSessions = false;
    const std::string points = file("W;A;1;2;;0;18;0\nT;1;2;3;4;0\nR;1;A\n");
    const std::string route = folder_.write("route.txt", "R;1;A\nW;A;1;2;;0;18;0\n");
    const std::function<void()> services[] = {
        [&] { EXPECT_FALSE(control().getWaypts()); },
        [&] { EXPECT_FALSE(control().getTracks()); },
        [&] { EXPECT_FALSE(control().GetRoutes()); },
        [&] { EXPECT_FALSE(control().SendWaypts(points)); },
        [&] { EXPECT_FALSE(control().SendRoutes(route)); },
        [&] { EXPECT_FALSE(control().SendTraces(points)); },
        [&] { EXPECT_FALSE(control().StartPvtData()); },
        [&] { EXPECT_EQ(control().GetTime(), 0); },
        [&] { EXPECT_EQ(control().getPosition(), ""); },
    };
    for (const auto& service : services) {
        play({kNoSession}, service);
    }
}

TEST_F(UsbTransferTest, ADownloadWithoutItsEndIsInterrupted) {
    connectGarmin(kTags);
    const double before = host.elapsed();
    getWaypts(
        {sends(10, {7, 0}), answers(27, {3, 0}), event("StartDownload|W|3|" + kWaypointsHeader),
         answers(35, d100("PT1")), event("WayptData|1|" + d100Line("PT1") + "|D"),
         box(BoxIcon::information, "Transfert Interrompu"), event("EndDownload|W")},
        false);
    EXPECT_NEAR(host.elapsed() - before, 0.5, 1e-6) << "told once, after one silence";
    play({sends(10, {6, 0}), answers(27, {3, 0}),
          event("StartDownload|T|3|--- T;lat;lon;heure;altitude;debut -----"),
          box(BoxIcon::information, "Transfert interrompu"), event("EndDownload|T")},
         [&] { EXPECT_FALSE(control().getTracks()); });
    getWaypts({sends(10, {7, 0}), protocolError(0)}, false);
}

TEST_F(UsbTransferTest, EveryPacketThatCameIsTakenWhateverWasAnnounced) {
    connectGarmin(kTags);
    getWaypts({sends(10, {7, 0}), answers(27, {1, 0}),
               event("StartDownload|W|1|" + kWaypointsHeader), answers(35, d100("PT1")),
               event("WayptData|1|" + d100Line("PT1") + "|D"), answers(1000 % 256, {1, 2, 3}),
               answers(35, d100("PT2")), event("WayptData|3|" + d100Line("PT2") + "|D"),
               answers(35, d100("PT3")), event("WayptData|4|" + d100Line("PT3") + "|D"),
               answers(12, {7, 0}), event("EndDownload|W")},
              true);
    EXPECT_TRUE(hasTraced("Paquet inconnu: pid = 232"));
}

TEST_F(UsbTransferTest, AHandlerMayDisconnectOrStartAnotherTransfer) {
    connectGarmin(kTags);
    usb().onWrite = nullptr;
    const auto unit = [&](const std::string& ident) {
        std::vector<Bytes> bulk = {application(27, {2, 0}),
                                   application(35, d100(ident)),
                                   application(35, d100(ident)),
                                   application(12, {7, 0}),
                                   {}};
        usb().play({{.write = application(10, {7, 0}),
                     .interrupt = {kDataAvailable},
                     .bulk = std::move(bulk)}});
    };
    const Step start = event("StartDownload|W|2|" + kWaypointsHeader);
    const Step end = event("EndDownload|W");
    const auto point = [](int number, const std::string& ident) {
        return event("WayptData|" + std::to_string(number) + "|" + d100Line(ident) + "|D");
    };
    unit("OUT");
    unit("IN");
    events.when("WayptData", 1, [&] { EXPECT_TRUE(control().getWaypts()); });
    play({start, point(1, "OUT"), start, point(1, "IN"), point(2, "IN"), end, point(2, "OUT"), end},
         [&] { EXPECT_TRUE(control().getWaypts()); });

    // StopTransfert is for serial lines.
    unit("GO");
    events.when("WayptData", 1, [&] { control().StopTransfert(); });
    play({start, point(1, "GO"), point(2, "GO"), end}, [&] { EXPECT_TRUE(control().getWaypts()); });

    unit("BYE");
    events.when("WayptData", 1, [&] { control().gpsDisconnect(); });
    play({start, point(1, "BYE"), end}, [&] { EXPECT_FALSE(control().getWaypts()); });
    EXPECT_FALSE(usb().isOpen());
    EXPECT_EQ(usb().problems(), "");
}

TEST_F(UsbTransferTest, ARefusedWriteEndsAnUploadInItsOrder) {
    connectGarmin(kTags);
    const std::string path =
        folder_.write("points.txt", "W;PT1;45;45;;0;18;0\nW;PT2;45;45;;0;18;0\n");
    usb().onWrite = nullptr;
    const auto refuse = [this] { usb().refusals = 1; };
    const auto written = [&](const std::function<void()>& call) {
        usb().written.clear();
        call();
        std::string ids;
        for (const Bytes& block : usb().written) {
            ids += std::to_string(block.at(4)) + " ";
        }
        return ids;
    };
    const Step waypoint = event("WayptData|1|W;PT1;45;45;;0;18;0|U");
    events.when("WayptData", 1, refuse);
    play({event("StartUpload|W|2|Waypoints"), waypoint,
          box(BoxIcon::critical, "ProblèmeW;PT1;45;45;;0;18;0"), event("EndUpload|W")},
         [&] { EXPECT_EQ(written([&] { EXPECT_FALSE(control().SendWaypts(path)); }), "27 12 "); });
    events.when("TrackData", 1, refuse);
    play({event("StartUpload|T|1|Upload Traces"), event("TrackData|1|T;45;45;32874.5;0;0|U"),
          protocolError(0), event("EndUpload|T")},
         [&] {
             EXPECT_EQ(written([&] {
                           EXPECT_FALSE(control().SendTraces(file("T;45;45;32874.5;0;0\n")));
                       }),
                       "27 12 ");
         });
    // Everything goes well up to the last packet.
    usb().onWrite = [&](const Bytes& block) { usb().refusals = block.at(4) == 29 ? 1 : 0; };
    const std::string route = file("R;1;A\n");
    play({event("StartUpload|R|1|Upload Routes"), event("RouteHeader|1|R;1;A|U"),
          event("EndUpload|R")},
         [&] { EXPECT_EQ(written([&] { EXPECT_FALSE(control().SendRoutes(route)); }), "27 29 "); });
    usb().onWrite = nullptr;
    // The count itself is refused: nothing starts. The session's write comes first.
    usb().answersSessions = false;
    usb().play({{.write = ScriptedUsb::packet(0, 5), .interrupt = {kStarted}, .action = refuse}});
    play({protocolError(0)}, [&] { EXPECT_FALSE(control().SendWaypts(path)); });
}

TEST_F(UsbTransferTest, TimeIsOneInterruptBlock) {
    connectGarmin(kTags);
    const Bytes time = {6, 15, 0xD7, 7, 23, 0, 4, 5};
    const auto GetTime = [&](const Script& script) {
        double result = -1;
        play(script, [&] { result = control().GetTime(); });
        return result;
    };
    const int openings = usb().openings;
    EXPECT_NEAR(
        GetTime({sends(10, {5, 0}), answers(14, time), box(BoxIcon::none, "15/06/2007 23:04:05")}),
        39248.961169, 1e-6);
    EXPECT_EQ(usb().openings, openings) << "the device is not opened anew";
    EXPECT_EQ(GetTime({sends(10, {5, 0}), answers(17, time), protocolError(17)}), 0);
    const double before = host.elapsed();
    EXPECT_EQ(GetTime({sends(10, {5, 0}), protocolError(0)}), 0);
    EXPECT_NEAR(host.elapsed() - before, 0.2, 1e-6);
}

TEST_F(UsbTransferTest, ThePositionComesOnEitherPipe) {
    connectGarmin(kTags);
    host.setNow(39234.5);
    usb().onWrite = nullptr;
    Bytes position(16);
    const double latitude = 45.5;
    const double longitude = -2.25;
    std::memcpy(position.data(), &latitude, 8);
    std::memcpy(position.data() + 8, &longitude, 8);
    const std::string line =
        "01/06/2007 12:00:00 - Position du GPS: Latitude: 45.5 - Longitude: -2.25";
    const Bytes notApplication = ScriptedUsb::packet(0, 17, position);
    struct Case {
        const char* what;
        std::vector<Bytes> interrupt;
        std::vector<Bytes> bulk;
        const char* mode;
        bool told;
    };
    const Case cases[] = {
        {"on the interrupt pipe", {application(17, position)}, {}, "Mode Interrupt", true},
        {"on the bulk pipe", {kDataAvailable}, {application(99, position)}, "Mode BULK", true},
        {"nothing", {}, {}, "", false},
        {"announced, but not there", {kDataAvailable}, {}, "Mode BULK", false},
        {"none in the bulk block", {kDataAvailable}, {notApplication}, "Mode BULK", false},
        {"none in the interrupt block", {notApplication}, {}, "", false},
        {"too short", {application(17, {1, 2, 3})}, {}, "Mode Interrupt", false},
    };
    for (const Case& c : cases) {
        const int openings = usb().openings;
        usb().play({{.write = application(10, {2, 0}), .interrupt = c.interrupt, .bulk = c.bulk}});
        play(c.told ? Script{} : Script{kNoPosition},
             [&] { EXPECT_EQ(control().getPosition(), c.told ? line : "") << c.what; });
        EXPECT_EQ(usb().openings, openings + 1) << "opened anew first";
        EXPECT_EQ(traced().back().starts_with("Mode "), *c.mode != 0) << c.what;
        EXPECT_TRUE(hasTraced(c.mode)) << c.what;
    }
    EXPECT_TRUE(hasTraced("Get Position  20 0 0 0 10 0 0 0 2 0 0 0 2 0"));
    EXPECT_FALSE(hasTraced("GetPosition")) << "that one is the serial line's";
    usb().opens = false;
    play({kNoSession}, [&] { EXPECT_EQ(control().getPosition(), ""); });
}

// One handle serves the whole control: opening it anew would end the transfer that runs on it.
TEST_F(UsbTransferTest, APositionInsideATransferUsesTheOpenDevice) {
    connectGarmin(kTags);
    const int openings = usb().openings;
    usb().onWrite = nullptr;
    usb().play({{.write = application(10, {7, 0}),
                 .interrupt = {kDataAvailable},
                 .bulk = {application(27, {2, 0}),
                          application(35, d100("PT1")),
                          application(35, d100("PT2")),
                          application(12, {7, 0}),
                          {}}},
                {.write = application(10, {2, 0}), .interrupt = {application(17, Bytes(16))}}});
    events.when("WayptData", 1, [this] { EXPECT_NE(control().getPosition(), ""); });
    const Step start = event("StartDownload|W|2|" + kWaypointsHeader);
    getWaypts({start, event("WayptData|1|" + d100Line("PT1") + "|D"),
               event("WayptData|2|" + d100Line("PT2") + "|D"), event("EndDownload|W")},
              true);
    EXPECT_EQ(usb().openings, openings);
    EXPECT_EQ(usb().problems(), "");
}

// Each packet was announced, and none of the announcements was read while the bulk pipe brought
// the packets themselves: they are no sign of life.
TEST_F(UsbTransferTest, AStreamWithoutEmptyBlocksIsMissedAfterOneTimeOut) {
    connectGarmin(kTags);
    usb().onWrite = nullptr;
    const Bytes other = application(114, {1, 2});
    usb().play({{.write = application(10, {49, 0}),
                 .interrupt = std::vector<Bytes>(10, kDataAvailable),
                 .bulk = std::vector<Bytes>(10, other)},
                {.write = application(10, {50, 0})}});
    const double before = host.elapsed();
    play({box(BoxIcon::critical, "Position non disponible"), event("EndPvt"),
          box(BoxIcon::information, "Transfert terminé.")},
         [&] { EXPECT_FALSE(control().StartPvtData()); });
    EXPECT_NEAR(host.elapsed() - before, 1.5, 0.05);
}

TEST_F(UsbTransferTest, EachPositionOfARunHasItsOwnPatience) {
    connectGarmin(kTags);
    const double before = host.elapsed();
    play({sends(10, {49, 0}), box(BoxIcon::critical, "Position non disponible"), sends(10, {50, 0}),
          event("EndPvt"), box(BoxIcon::information, "Transfert terminé.")},
         [&] { EXPECT_FALSE(control().StartPvtData()); });
    EXPECT_NEAR(host.elapsed() - before, 1.5, 1e-6);
}

}  // namespace
}  // namespace marlune
