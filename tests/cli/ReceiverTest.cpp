// Whole commands against the virtual receivers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
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

// What a receiver holds, but for what no command sends.
std::string holdings(const BuiltIn& receiver) {
    std::string text;
    for (const std::string& line : receiver.lines()) {
        text += line.starts_with("P;") ? "" : line + "\n";
    }
    return text;
}

// A receiver's records go into files, from there into an empty one of its kind, and are the same.
TEST_F(ReceiverTest, FilesTakeEverythingFromOneReceiverToAnother) {
    const struct {
        const char* unit;
        const char* suffix;
    } cases[] = {{"map162", ".gpx"}, {"map76", ".csv"}};
    for (const auto& c : cases) {
        receivers::ReceiverOptions full;
        full.unit = c.unit;
        receivers::ReceiverOptions empty = full;
        empty.dataFile = folder.write("empty", "");
        const BuiltIn first("garmin", full, false);
        const BuiltIn second("garmin", empty, false);
        for (const std::string kind : {"waypoints", "routes", "tracks"}) {
            const std::string file = folder.path() / (kind + c.suffix);
            (void)run(first, {kind, "-o", file});
            (void)run(second, {"send-" + kind, file});
        }
        EXPECT_EQ(holdings(second), holdings(first)) << c.unit;
    }
}

TEST_F(ReceiverTest, WritesTheFormatThatIsAskedFor) {
    const BuiltIn receiver("garmin");
    const std::string lines = run(receiver, {"tracks"});
    const std::string file = folder.path() / "t.geojson";
    EXPECT_EQ(run(receiver, {"tracks", "-o", file}), lines);
    EXPECT_THAT(folder.read("t.geojson"), StartsWith("{\"type\":\"FeatureCollection\""));
    EXPECT_THAT(run(receiver, {"tracks", "--format", "csv"}), StartsWith("kind,name,"));
    (void)run(receiver, {"tracks", "-o", folder.path() / "t.txt"});
    EXPECT_EQ(folder.read("t.txt"), lines);
    // 2006 is as far back as a receiver of 2026 says.
    Program fixed({"tracks", "--format", "gpx", "--reference", "2027-01-01", "--port",
                   receiver.path(), "--lang", "en"});
    EXPECT_THAT(fixed.rest(), HasSubstr("<time>2026-"));
    EXPECT_EQ(fixed.wait(), 0);
    EXPECT_THAT(fixed.errors(), HasSubstr(" were moved forward by 1024 weeks"));
}

TEST_F(ReceiverTest, FeedsNavigationProgramsWithSentences) {
    const BuiltIn receiver("garmin");
    const std::string link = folder.path() / "feed";
    Program program({"pvt", "--format", "nmea", "--link", link, "--port", receiver.path()});
    EXPECT_THAT(program.line().value_or(""), StartsWith("$GPGGA,"));
    EXPECT_THAT(program.line().value_or(""), StartsWith("$GPRMC,"));
    Program reader({"nmea", "$GPGGA", "30", "--port", link});
    EXPECT_THAT(reader.line().value_or(""), StartsWith("$GPGGA,"));
    reader.signal(SIGINT);
    EXPECT_EQ(reader.wait(), 130);
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), 130);
    EXPECT_FALSE(std::filesystem::is_symlink(link));
}

TEST_F(ReceiverTest, FindsTheReceiverAndUsesIt) {
    const BuiltIn receiver("garmin");
    Program program({"find", receiver.path(), "--timeout", "15", "--lang", "en"});
    EXPECT_EQ(program.rest(), "--port " + receiver.path() + " --mark GRM\n");
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(program.errors(), HasSubstr("asking " + receiver.path() + " for GRM"));
    EXPECT_THAT(program.errors(), HasSubstr("GPSId: "));
    EXPECT_THAT(outputOf({"ports", "--port-device", "7=" + receiver.path()}),
                HasSubstr(receiver.path() + "  COM7  yes"));
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
