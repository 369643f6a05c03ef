// Whole commands against the virtual receivers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>

#include "cli/Program.h"
#include "marlune/Gpx.h"
#include "receivers/BuiltIn.h"
#include "support/TempFolder.h"

namespace marlune::cli {
namespace {

using receivers::BuiltIn;
using testing::HasSubstr;
using testing::StartsWith;

class ReceiverTest : public testing::Test {
protected:
    // Runs a command to its end and returns what it printed.
    static std::string run(const BuiltIn& receiver, std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--port", receiver.path(), "--decimal", "."});
        return outputOf(std::move(arguments));
    }

    TempFolder folder;
};

TEST_F(ReceiverTest, AnswersAgainAfterCtrlC) {
    receivers::ReceiverOptions options;
    options.baud = 9600;
    const BuiltIn receiver("garmin", options, true);
    {
        Program program({"waypoints", "--port", receiver.path()});
        EXPECT_TRUE(program.line());
        program.signal(SIGINT);
        EXPECT_EQ(program.wait(), 130);
    }
    const std::string all = run(receiver, {"waypoints"});
    EXPECT_THAT(all, StartsWith("W;"));
    EXPECT_GE(std::count(all.begin(), all.end(), '\n'), 5);
}

TEST_F(ReceiverTest, FollowsThePositionUntilCtrlC) {
    const BuiltIn receiver("garmin");
    {
        Program program({"pvt", "--port", receiver.path()});
        EXPECT_THAT(program.line().value_or(""), StartsWith("N;Trace tps réel - "));
        EXPECT_THAT(program.line().value_or(""), StartsWith("T;"));
        program.signal(SIGINT);
        EXPECT_EQ(program.wait(), 130);
        EXPECT_THAT(program.errors(), HasSubstr("Transfert terminé."));
    }
    EXPECT_THAT(run(receiver, {"ident"}), StartsWith("Marlune Version "));
}

// A receiver's tracks and routes go into a GPX file, from there into another receiver, and come
// back from it as they were, but for what GPX does not carry.
TEST_F(ReceiverTest, GpxTakesTracksAndRoutesFromOneReceiverToAnother) {
    const std::string gpx = folder.path() / "all.gpx";
    receivers::ReceiverOptions empty;
    empty.dataFile = folder.write("empty", "");
    for (const GpxKind kind : {GpxKind::tracks, GpxKind::routes}) {
        const std::string get = kind == GpxKind::tracks ? "tracks" : "routes";
        const BuiltIn first("garmin");
        const BuiltIn second("garmin", empty, false);
        const std::string all = run(first, {get, "--gpx", gpx});
        const std::string sent = run(second, {"send-" + get, gpx});
        const std::vector<std::string> lines = GpxReader(kind).readFile(gpx);
        EXPECT_GE(lines.size(), 10U);
        for (const std::string& line : lines) {
            EXPECT_THAT(sent, HasSubstr(line + "\n"));
        }
        // Routes came without their points' symbols.
        EXPECT_EQ(run(second, {get}), kind == GpxKind::tracks ? all : sent);
    }
}

TEST_F(ReceiverTest, ADriveKeepsTheNameOfTheFile) {
    (void)folder.write("GARMIN/GARMIN/Garmindevice.xml",
                       "<Device><Description>nuvi</Description><MassStorageMode><DataType>"
                       "<Name>GPSData</Name><File><Location><Path>GARMIN/GPX</Path></Location>"
                       "<TransferDirection>InputToUnit</TransferDirection></File>"
                       "</DataType></MassStorageMode></Device>");
    (void)folder.write("GARMIN/GARMIN/GPX/kept.gpx", "old");
    const std::string file = folder.write("home.gpx", "<gpx><wpt lat='1' lon='2'/></gpx>");
    Program program({"send-waypoints", file, "--mark", "GRM_USB", "--drive",
                     (folder.path() / "GARMIN").string(), "--decimal", "."});
    EXPECT_EQ(program.wait(), 0) << program.errors();
    EXPECT_THAT(GpxReader(GpxKind::waypoints).readText(folder.read("GARMIN/GARMIN/GPX/home.gpx")),
                testing::ElementsAre("W;;1;2;;0;18;0"));
}

TEST_F(ReceiverTest, MagellanRoutesComeWithoutTheWaypointsThatTheyNeed) {
    const BuiltIn receiver("magellan");
    EXPECT_THAT(run(receiver, {"routes", "--mark", "MGN"}), StartsWith("R;1;"));
}

TEST_F(ReceiverTest, TheHostServesABuiltInReceiver) {
    Program program({"host", "--port", "virtual"});
    program.write(R"({"call":"gpsConnect"}
{"when":"WayptData","nth":1,"call":"StopTransfert"}
{"call":"getWaypts"}
)");
    EXPECT_EQ(program.line(), R"({"call":"gpsConnect","result":true})");
    EXPECT_THAT(program.line().value_or(""),
                StartsWith(R"({"event":"StartDownload","DataType":"W","nbitem":)"));
    EXPECT_THAT(program.line().value_or(""), StartsWith(R"({"event":"WayptData","numitem":1,)"));
    EXPECT_EQ(program.line(), R"({"call":"StopTransfert","result":null})");
    EXPECT_EQ(program.line(), R"({"event":"EndDownload","DataType":"W"})");
    EXPECT_EQ(program.line(), R"({"call":"getWaypts","result":false})");
    program.closeInput();
    EXPECT_EQ(program.wait(), 0);
}

TEST_F(ReceiverTest, ReceiversThatDoNotExistAreWrongUsage) {
    Program program({"ident", "--port", "virtual:Nonesuch"});
    EXPECT_EQ(program.wait(), 2);
    EXPECT_THAT(program.errors(), HasSubstr("Nonesuch"));
}

}  // namespace
}  // namespace marlune::cli
