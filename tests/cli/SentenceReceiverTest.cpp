// Whole commands against the virtual receivers that speak sentences: what one gives is sent to
// another and comes back from there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <sstream>

#include "cli/Program.h"
#include "receivers/BuiltIn.h"
#include "support/TempFolder.h"

namespace marlune::cli {
namespace {

using receivers::BuiltIn;
using receivers::ReceiverOptions;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

class SentenceReceiverTest : public testing::Test {
protected:
    // An empty unit of the family.
    [[nodiscard]] ReceiverOptions empty() const {
        ReceiverOptions options;
        options.dataFile = folder.write("empty", "");
        return options;
    }

    // The lines as a file to send; the mark says that it is UTF-8.
    [[nodiscard]] std::string file(const std::string& lines) const {
        return folder.write("lines.txt", "\xEF\xBB\xBF" + lines);
    }

    // Runs a command to its end and returns what it printed.
    static std::string run(const std::string& mark, const BuiltIn& receiver,
                           std::vector<std::string> arguments) {
        arguments.insert(arguments.end(),
                         {"--mark", mark, "--port", receiver.path(), "--decimal", "."});
        return outputOf(std::move(arguments));
    }

    // Makes the calls through the scriptable host and returns its answers.
    static std::string host(const std::string& mark, const BuiltIn& receiver,
                            const std::vector<std::string>& calls) {
        Program program({"host", "--mark", mark, "--port", receiver.path(), "--decimal", "."});
        for (const std::string& call : calls) {
            program.write(call + "\n");
        }
        program.closeInput();
        std::string answers = program.rest();
        EXPECT_EQ(program.wait(), 0);
        return answers;
    }
    static std::string call(const std::string& member, const std::string& arguments = "") {
        return R"({"call":")" + member + R"(","args":[)" + arguments + "]}";
    }

    // The record lines in the host's answers, which hold those that begin with one of the letters.
    static std::string recordsIn(const std::string& answers, const std::string& letters) {
        std::istringstream lines(answers);
        std::string records;
        for (std::string line; std::getline(lines, line);) {
            const std::size_t start = line.find("Item\":\"");
            if (start != std::string::npos && letters.find(line[start + 7]) != std::string::npos) {
                records += line.substr(start + 7, line.find('"', start + 7) - start - 7) + "\n";
            }
        }
        return records;
    }

    TempFolder folder;
};

TEST_F(SentenceReceiverTest, MagellanWaypointsAndTracksGoRound) {
    const BuiltIn first("magellan");
    const BuiltIn second("magellan", empty(), false);
    const std::string places = run("MGN", first, {"waypoints"});
    EXPECT_EQ(std::count(places.begin(), places.end(), '\n'), 12);
    EXPECT_EQ(run("MGN", second, {"send-waypoints", file(places)}), places);
    EXPECT_EQ(run("MGN", second, {"waypoints"}), places);

    // No sentence of an upload has a day, and names go in capitals: the tracks come back dated
    // today, under names that say so.
    const std::string tracks = run("MGN", first, {"tracks"});
    EXPECT_THAT(tracks, StartsWith("N;Montenvers - 14/07/2006\nT;45.924782;6.877033;38912.277"));
    (void)run("MGN", second, {"send-tracks", file(tracks)});
    EXPECT_THAT(run("MGN", second, {"tracks"}),
                ContainsRegex("^N;MONTENVERS - 14/07/2006 - .*\nT;45.924782;6.877033;"));
    EXPECT_TRUE(second.complaints().empty());
}

TEST_F(SentenceReceiverTest, MagellanIsHeardAtItsOwnSpeed) {
    ReceiverOptions options;
    options.baud = 9600;  // paced: at any other speed it hears noise
    const BuiltIn receiver("magellan", options, true);
    EXPECT_THAT(run("MGN;9600", receiver, {"ident"}), HasSubstr("GPSId: "));
    EXPECT_TRUE(receiver.complaints().empty());
}

TEST_F(SentenceReceiverTest, MagellanRoutesGoRound) {
    const BuiltIn first("magellan");
    const BuiltIn second("magellan", empty(), false);
    const std::vector<std::string> session = {call("gpsConnect"), call("getWaypts"),
                                              call("GetRoutes")};
    const std::string answers = host("MGN", first, session);
    const std::string routes = recordsIn(answers.substr(answers.find(R"("DataType":"R")")), "RW");
    EXPECT_THAT(routes, StartsWith("R;1;GOUTER VOIE NORMALE\nW;CHAMX;45.923618;"));
    EXPECT_EQ(run("MGN", second, {"send-routes", file(routes)}), routes);
    const std::string back = host("MGN", second, session);
    EXPECT_EQ(recordsIn(back.substr(back.find(R"("DataType":"R")")), "RW"), routes);
}

TEST_F(SentenceReceiverTest, MagellanPositionsAreFollowed) {
    ReceiverOptions options;
    options.rate = 10;
    const std::string answers =
        host("MGN", BuiltIn("magellan", options, false),
             {R"({"when":"PvtData","nth":3,"call":"StopPvtData","args":[]})", call("gpsConnect"),
              call("StartPvtData")});
    EXPECT_THAT(recordsIn(answers, "T"), ContainsRegex("^T;45[^\n]*;-1\nT;45.*;0\nT;45.*;0\n$"));
    EXPECT_THAT(answers, HasSubstr("EndPvt"));
}

TEST_F(SentenceReceiverTest, MlrBlocksAndSentencesGoRound) {
    const BuiltIn first("mlr");
    const BuiltIn second("mlr", empty(), false);
    const std::string answers =
        host("MLR", first,
             {call("gpsConnect"), call("getWaypts"), call("getTracks"), call("GetRoutes")});
    EXPECT_THAT(recordsIn(answers, "T"), StartsWith("T;45.924783;6.877033;"));
    const std::size_t routesBegin = answers.find("Routes MLR");
    ASSERT_NE(routesBegin, std::string::npos) << answers;
    const std::string places = recordsIn(answers.substr(0, routesBegin), "W");
    const std::string routes = recordsIn(answers.substr(routesBegin), "RW");
    EXPECT_THAT(places, StartsWith("W;CHAMX ;45.923618;6.86945;Chamonix - gare;0;18;0\n"));
    EXPECT_THAT(routes, StartsWith("R;1;ROUTE 1\nW;CHAMX ;45.923618;"));

    (void)run("MLR", second, {"send-waypoints", file(places)});
    EXPECT_EQ(run("MLR", second, {"waypoints"}), places);
    (void)run("MLR", second, {"send-routes", file(routes)});
    EXPECT_EQ(run("MLR", second, {"routes"}), routes);
    EXPECT_TRUE(second.complaints().empty());
}

TEST_F(SentenceReceiverTest, StopsABlockDownloadThatNeverEnds) {
    ReceiverOptions options;
    options.faults = {"silence:packet=4,of=BLOC,for=2"};
    const BuiltIn receiver("mlr", options, false);
    Program program({"host", "--mark", "MLR", "--port", receiver.path()});
    program.write(call("gpsConnect") + "\n" + call("getTracks") + "\n");
    EXPECT_THAT(program.linesUpTo("....16"), HasSubstr("gpsConnect\",\"result\":true"));
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), 130);
    EXPECT_THAT(run("MLR", receiver, {"ident"}), HasSubstr("MLR SP24 XC"));
}

}  // namespace
}  // namespace marlune::cli
