// Uploads, from the file's lines to the last packet: over every line where the lines do the same,
// else over a serial line.
#include <gtest/gtest.h>

#include "garmin/GarminRecords.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

const std::string kTags = "A100 D100 A200 D201 A300 D300";
// 45 degrees encode one semicircle short.
const Bytes k45Short = {0xFF, 0xFF, 0xFF, 0x1F};

Bytes d100Sent(const std::string& ident, const std::string& comment) {
    return join({padded(ident, 6), k45Short, k45Short, Bytes(4, 0), padded(comment + '\0', 40)});
}
Bytes d300Sent(bool newSegment) {
    return join({k45Short,
                 k45Short,
                 {0x40, 0xFA, 1, 0},
                 {static_cast<std::uint8_t>(newSegment ? 0xFF : 0)}});
}

class UploadTest : public testing::Test, protected Stage {
protected:
    explicit UploadTest(Line line = Line::serial) : Stage(line) {}
    void SetUp() override { connectGarmin(kTags); }

    std::string file(const std::string& text) { return folder_.write("upload.txt", text); }
    void send(bool (GpsControl::*member)(const std::string&), const std::string& path,
              const Script& script) {
        play(script, [&] { EXPECT_EQ((control().*member)(path), resultOf(script)); });
    }
    void SendWaypts(const std::string& path, const Script& script) {
        send(&GpsControl::SendWaypts, path, script);
    }
    void SendRoutes(const std::string& path, const Script& script) {
        send(&GpsControl::SendRoutes, path, script);
    }
    void SendTraces(const std::string& path, const Script& script) {
        send(&GpsControl::SendTraces, path, script);
    }

    // The opening of an upload of so many records.
    static Script opening(std::uint8_t count, const std::string& start) {
        return {sends(27, {count, 0}), answers(6), event("StartUpload|" + start)};
    }
    // What the host is told of a record, the record, and its acknowledgement.
    static Script record(const std::string& told, std::uint8_t pid, const Bytes& data) {
        return {event(told + "|U"), sends(pid, data), answers(6, {pid, 0})};
    }
    static Script routePoint(int item, const std::string& ident, const std::string& comment) {
        return record(
            "RouteData|" + std::to_string(item) + "|W;" + ident + ";45;45;" + comment + ";0;18;0",
            30, d100Sent(ident, comment));
    }

    TempFolder folder_;
};

class EveryLineUploadTest : public UploadTest, public testing::WithParamInterface<Line> {
protected:
    EveryLineUploadTest() : UploadTest(GetParam()) {}
};
INSTANTIATE_TEST_SUITE_P(, EveryLineUploadTest, kSerialAndUsb, lineName);

const std::string kTwoWaypoints = "W;PT1;45;45;NOTE;0;18;0\r\nW;PT2;45,0;45.0;;0;18;0\r\n";
const Step kWaypoint1 = event("WayptData|1|W;PT1;45;45;NOTE;0;18;0|U");
const Step kWaypoint2 = event("WayptData|2|W;PT2;45;45;;0;18;0|U");

TEST_P(EveryLineUploadTest, SendsWaypoints) {
    SendWaypts(file(kTwoWaypoints),
               opening(2, "W|2|Waypoints") +
                   record("WayptData|1|W;PT1;45;45;NOTE;0;18;0", 35, d100Sent("PT1", "NOTE")) +
                   record("WayptData|2|W;PT2;45;45;;0;18;0", 35, d100Sent("PT2", "")) +
                   Script{sends(12, {0}), answers(6, {12, 0}), event("EndUpload|W")});
}

TEST_F(UploadTest, GivesASilentUnitASecondChancePerWaypoint) {
    // What the second receive brings is not looked at, even a refusal.
    events.when("WayptData", 2, [this] { port().arrive(garminFrame(21, {35, 0}), 1.5); });
    const double before = host.elapsed();
    SendWaypts(file(kTwoWaypoints),
               {sends(27, {2, 0}), answers(6), event("StartUpload|W|2|Waypoints"), kWaypoint1,
                sends(35, d100Sent("PT1", "NOTE")), kWaypoint2, sends(35, d100Sent("PT2", "")),
                sends(12, {0}), event("EndUpload|W")});
    EXPECT_NEAR(host.elapsed() - before, 2.2 + 1.5, 0.01);
}

TEST_F(UploadTest, EndsAtARefusedWaypoint) {
    SendWaypts(file(kTwoWaypoints),
               {sends(27, {2, 0}), answers(6), event("StartUpload|W|2|Waypoints"), kWaypoint1,
                sends(35, d100Sent("PT1", "NOTE")), answers(21, {35, 0}),
                box(BoxIcon::critical, "ProblèmeW;PT1;45;45;NOTE;0;18;0"), sends(12, {0}),
                event("EndUpload|W")});
}

TEST_F(UploadTest, ARefusedCountEndsEveryKindWithoutEvents) {
    SendWaypts(file(kTwoWaypoints), {sends(27, {2, 0}), answers(21, {27, 0}), protocolError(21)});
    SendRoutes(file("R;1;A\nW;PT1;45;45;;0;18;0\n"),
               {sends(27, {2, 0}), answers(21), protocolError(21)});
    SendTraces(file("T;45;45;32874.5;0;0\n"), {sends(27, {1, 0}), answers(21), protocolError(21)});
}

TEST_P(EveryLineUploadTest, SendsNothingWithoutAFileOrRecords) {
    const Step notFound = box(BoxIcon::critical, "Fichier non trouvé");
    SendWaypts((folder_.path() / "missing.txt").string(), {notFound});
    SendRoutes(folder_.path().string(), {notFound});
    SendTraces("", {box(BoxIcon::critical, "Fichier non renseigné")});
    SendWaypts(file("nothing here\n"), {});
    SendTraces(file("nothing here\n"), {});
    // A route file without routes is complete: the count goes out.
    SendRoutes(file("nothing here\n"),
               {sends(27, {0, 0}), answers(6), event("StartUpload|R|0|Upload Routes"),
                sends(12, {0}), event("EndUpload|R")});
    // A point in front of every route is an error: nothing goes out.
    SendRoutes(file("W;PT1;45;45;;0;18;0\nR;1;A\n"), {});
}

TEST_P(EveryLineUploadTest, ShowsRunTimeErrorsAndSendsNoEnd) {
    connectGarmin("A100 D154 A200 D201");
    SendWaypts(file(kTwoWaypoints),
               {sends(27, {2, 0}), answers(6), event("StartUpload|W|2|Waypoints"), kWaypoint1,
                box(BoxIcon::critical,
                    "Erreur Upload Waypoints 9 L'indice n'appartient pas à la sélection")});
    SendRoutes(
        file("R;1;A\nW;PT1;45;45;NOTE;0;18;0\n"),
        {sends(27, {2, 0}), answers(6), event("StartUpload|R|2|Upload Routes"),
         event("RouteHeader|1|R;1;A|U"), sends(29, join({{1, 'A', 0}, Bytes(18, ' ')})), answers(6),
         event("RouteData|2|W;PT1;45;45;NOTE;0;18;0|U"),
         box(BoxIcon::critical, "Erreur Upload Route 9 L'indice n'appartient pas à la sélection")});
}

const Script kRouteEnd = {sends(12, {0}), event("EndUpload|R")};
const Bytes kHeaderAbc = join({{2, 'A', 'B', 'C', 0}, Bytes(16, ' ')});

TEST_P(EveryLineUploadTest, SendsRoutesWithoutLinks) {
    SendRoutes(file("R;2;ABC\nW;PT1;45;45;NOTE;0;18;0\nW;PT2;45;45;;0;18;0\nR;3;\n"),
               opening(4, "R|4|Upload Routes") + record("RouteHeader|1|R;2;ABC", 29, kHeaderAbc) +
                   routePoint(2, "PT1", "NOTE") + routePoint(3, "PT2", "") +
                   record("RouteHeader|4|R;3;", 29, join({{3, 0}, Bytes(19, ' ')})) + kRouteEnd);
}

TEST_P(EveryLineUploadTest, SendsALinkBetweenThePointsOfA201) {
    connectGarmin("A100 D100 A201 D201 D210");
    const Bytes link = join({{255, 0}, Bytes(6, 0), Bytes(11, 255), {0}, padded("PT1", 9), {0}});
    SendRoutes(file("R;2;ABC\nW;PT1;45;45;NOTE;0;18;0\nW;PT2;45;45;;0;18;0\n"),
               opening(4, "R|4|Upload Routes") + record("RouteHeader|1|R;2;ABC", 29, kHeaderAbc) +
                   routePoint(2, "PT1", "NOTE") + record("RouteLink|3|L;RteLink PT1", 98, link) +
                   routePoint(4, "PT2", "") + kRouteEnd);
}

TEST_F(UploadTest, RoutesAndTracksEndAtAnyAnswerButAnAcknowledgement) {
    const std::string route = file("R;2;ABC\nW;PT1;45;45;NOTE;0;18;0\n");
    const Script start = {sends(27, {2, 0}), answers(6), event("StartUpload|R|2|Upload Routes"),
                          event("RouteHeader|1|R;2;ABC|U"), sends(29, kHeaderAbc)};
    SendRoutes(route, start + Script{answers(21), protocolError(21)} + kRouteEnd);
    SendRoutes(route, start + Script{protocolError(0)} + kRouteEnd);
    SendRoutes(route,
               start +
                   Script{answers(6), event("RouteData|2|W;PT1;45;45;NOTE;0;18;0|U"),
                          sends(30, d100Sent("PT1", "NOTE")), answers(12), protocolError(12)} +
                   kRouteEnd);
    SendTraces(file("T;45;45;32874.5;0;0\nT;45;45;32874.5;0;0\n"),
               {sends(27, {2, 0}), answers(6), event("StartUpload|T|2|Upload Traces"),
                event("TrackData|1|T;45;45;32874.5;0;0|U"), sends(34, d300Sent(false)), answers(21),
                protocolError(21), sends(12), event("EndUpload|T")});
}

TEST_P(EveryLineUploadTest, SendsTracksWithHeaders) {
    connectGarmin("A301 D310 D300");
    SendTraces(file("N;TRK1\nT;45;45;32874.5;0;0\nT;45;45;32874.5;0;0\n"),
               opening(3, "T|3|Upload Traces") +
                   record("TrackHeader|1|N;TRK1", 99, {0, 0, 'T', 'R', 'K', '1', 0, 0}) +
                   record("TrackData|2|T;45;45;32874.5;0;-1", 34, d300Sent(true)) +
                   record("TrackData|3|T;45;45;32874.5;0;0", 34, d300Sent(false)) +
                   Script{sends(12), answers(6), event("EndUpload|T")});
    EXPECT_EQ(host.pointer, MousePointer::normal);
}

TEST_F(UploadTest, EndsAtAPointThatItCannotEncode) {
    connectGarmin("A302 D312 D304");
    SendTraces(file("T;45;45;32874.5;0;0\n"),
               {sends(27, {1, 0}), answers(6), event("StartUpload|T|1|Upload Traces"), sends(12),
                event("EndUpload|T")});
}

TEST_F(UploadTest, ATrackNameTooLongForAFrameIsNotSent) {
    connectGarmin("A301 D310 D300");
    const std::string name(300, 'x');
    SendTraces(file("N;" + name + "\n"),
               {sends(27, {1, 0}), answers(6), event("StartUpload|T|1|Upload Traces"),
                event("TrackHeader|1|N;" + name + "|U"), protocolError(0), sends(12),
                event("EndUpload|T")});
}

TEST_P(EveryLineUploadTest, RefusesMoreRecordsThanACountHolds) {
    std::string points;
    for (int i = 0; i < 32768; ++i) {
        points += "T;45;45;32874.5;0;0\n";
    }
    SendTraces(file(points),
               {box(BoxIcon::critical, "Erreur Upload Traces 6 Dépassement de capacité")});
}

TEST_P(EveryLineUploadTest, GatesWhatTheUnitDoesNotOffer) {
    connectGarmin("L001 D100");
    const Step notAvailable = box(BoxIcon::critical, "Protocole non disponible pour ce GPS");
    // The gate comes before the file.
    SendWaypts("", {notAvailable});
    SendRoutes("", {notAvailable});
    SendTraces("", {notAvailable});
}

TEST_P(EveryLineUploadTest, EndsWithItsPort) {
    const std::string path = file(kTwoWaypoints);
    const std::string route = folder_.write("route.txt", "R;1;A\nW;PT1;45;45;NOTE;0;18;0\n");
    const auto unplugAt = [this](const char* name) {
        events.when(name, 1, [this] { onUsb() ? usb().unplug() : port().unplug(); });
    };
    unplugAt("WayptData");
    SendWaypts(path, opening(2, "W|2|Waypoints") + Script{kWaypoint1, event("EndUpload|W")});
    EXPECT_EQ(control().lastTransfer().ending, Ending::deviceGone);
    EXPECT_EQ(control().lastTransfer().transferred, 0);
    if (onUsb()) {
        return;  // every service begins with a session there
    }
    SendWaypts(path, {event("StartUpload|W|2|Waypoints"), event("EndUpload|W")});
    SendRoutes(route, {event("StartUpload|R|2|Upload Routes"), event("EndUpload|R")});
    EXPECT_EQ(control().lastTransfer().ending, Ending::deviceGone);
}

TEST_P(EveryLineUploadTest, AHandlerMayDisconnectOrReplaceTheRecords) {
    const std::string path = file(kTwoWaypoints);
    const Script start = opening(2, "W|2|Waypoints");
    // Another upload from inside: the outer one goes on with what there is then.
    events.when("WayptData", 2, [&] { control().SendWaypts(file("W;IN;45;45;;0;18;0\n")); });
    SendWaypts(
        path, start + Script{kWaypoint1, sends(35, d100Sent("PT1", "NOTE")), answers(6), kWaypoint2,
                             sends(27, {1, 0}), answers(6), event("StartUpload|W|1|Waypoints"),
                             event("WayptData|1|W;IN;45;45;;0;18;0|U"),
                             sends(35, d100Sent("IN", "")), answers(6), sends(12, {0}), answers(6),
                             event("EndUpload|W"), sends(35, d100Sent("PT2", "")), answers(6),
                             sends(12, {0}), event("EndUpload|W")});

    events.when("WayptData", 1, [this] { control().gpsDisconnect(); });
    SendWaypts(file(kTwoWaypoints), start + Script{kWaypoint1, event("EndUpload|W")});
}

}  // namespace
}  // namespace marlune
