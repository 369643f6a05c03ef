#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "garmin/UploadFiles.h"
#include "support/FakeHost.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const UploadFormat kGarmin = {"GRM", "D108", "", "A301", "D310", "."};

class UploadFilesTest : public testing::Test {
protected:
    std::vector<std::string> waypoints(const std::string& content,
                                       const UploadFormat& format = kGarmin) {
        std::vector<Waypoint> read(1);
        reading_ = readWaypointFile(host_, folder_.write("file", content), format, read);

        std::vector<std::string> lines;
        lines.reserve(read.size());
        for (Waypoint& waypoint : read) {
            lines.push_back(waypoint.getIdent('.'));
        }
        return lines;
    }

    std::vector<std::string> routes(const std::string& content,
                                    const UploadFormat& format = kGarmin) {
        std::vector<Route> read(1);
        reading_ = readRouteFile(host_, folder_.write("file", content), format, read);

        std::vector<std::string> lines;
        for (Route& route : read) {
            lines.push_back(route.getIdent());
            for (Waypoint& point : route.Waypoints()) {
                lines.push_back(point.ident);
            }
        }
        return lines;
    }

    // Headers as their lines, points as their lines and their track's name.
    std::vector<std::string> tracks(const std::string& content,
                                    const UploadFormat& format = kGarmin) {
        std::vector<TrackItem> read(1);
        reading_ = readTrackFile(host_, folder_.write("file", content), format, read);

        std::vector<std::string> lines;
        for (TrackItem& item : read) {
            if (auto* const point = std::get_if<Trace>(&item)) {
                lines.push_back(point->getIdent('.') + ' ' + point->GetName());
            } else {
                const auto& header = std::get<TrkHeader>(item);
                lines.push_back(header.getIdent() + ' ' + std::to_string(header.index));
            }
        }
        return lines;
    }

    FakeHost host_;
    TempFolder folder_;
    FileReading reading_;
};

TEST_F(UploadFilesTest, ReadsWaypointsAndSkipsOtherLines) {
    EXPECT_THAT(waypoints("---- W;id ----\r\n\r\nW;PT 1;45,5;-1,25;a,b;100;18;0\r\n W;no\nw;no\n"
                          "N;x\nW;PT2;1;2;;3;4;5"),
                ElementsAre("W;PT 1;45.5;-1.25;a.b;100;18;0", "W;PT2;1;2;;3;4;5"));
    EXPECT_TRUE(reading_);
    EXPECT_THAT(waypoints("R;1;x\n"), IsEmpty());
    EXPECT_FALSE(reading_);
    EXPECT_THAT(waypoints(""), IsEmpty());
    EXPECT_FALSE(reading_);
    EXPECT_THAT(host_.boxes, IsEmpty());
}

TEST_F(UploadFilesTest, ReplacesCommasByTheSetting) {
    UploadFormat format = kGarmin;
    const std::string line = "W;A;1,5;2;x;3;4;5";
    format.decimalSeparator = ",";
    EXPECT_THAT(waypoints(line, format), ElementsAre("W;A;1;2;x;3;4;5"));
    format.decimalSeparator = "";
    EXPECT_THAT(waypoints(line, format), ElementsAre("W;A;15;2;x;3;4;5"));
}

TEST_F(UploadFilesTest, FormatDecidesOnTheBlanksOfIdents) {
    const std::string line = "W;PT 1;1;2;;3;4;5\n";
    EXPECT_THAT(waypoints(line, {"GRM_USB", "D109", "", "", "", "."}),
                ElementsAre("W;PT-1;1;2;;3;4;5"));
    EXPECT_THAT(waypoints(line, {"MGN", "D108", "", "", "", "."}),
                ElementsAre("W;PT-1;1;2;;3;4;5"));
    const std::string route = "R;1;x\n" + line;
    EXPECT_THAT(routes(route, {"GRM", "D108", "D106", "", "", "."}), ElementsAre("R;1;x", "PT-1"));
    EXPECT_THAT(routes(route, {"GRM", "D108", "", "", "", "."}), ElementsAre("R;1;x", "PT 1"));
    EXPECT_THAT(routes(route, {"MGN", "", "", "", "", "."}), ElementsAre("R;1;x", "PT 1"));
}

TEST_F(UploadFilesTest, ReadsWindows1252AndMarkedUtf8) {
    EXPECT_THAT(waypoints("W;\xC9T\xC9;1;2;;3;4;5\n"), ElementsAre("W;ÉTÉ;1;2;;3;4;5"));
    EXPECT_THAT(waypoints("\xEF\xBB\xBFW;ÉTÉ;1;2;;3;4;5\r\n"), ElementsAre("W;ÉTÉ;1;2;;3;4;5"));
    EXPECT_THAT(waypoints("W;ÉTÉ;1;2;;3;4;5\n"), ElementsAre("W;Ã‰TÃ‰;1;2;;3;4;5"))
        << "without a mark it is Windows-1252";
    EXPECT_THAT(waypoints("\xEF\xBB\xBFW;A;1;2;;3;4;5\nW;\xC9;1;2;;3;4;5"),
                ElementsAre("W;É;1;2;;3;4;5"))
        << "invalid UTF-8 is Windows-1252, whose first line then begins with the mark";
}

TEST_F(UploadFilesTest, AnErrorKeepsWhatWasGathered) {
    const std::string good = "W;A;1;2;;3;4;5\n";
    EXPECT_THAT(waypoints(good + "W;B;1;2\n" + good), ElementsAre("W;A;1;2;;3;4;5"));
    EXPECT_TRUE(reading_);
    EXPECT_THAT(waypoints("W;B\n" + good), IsEmpty());
    EXPECT_FALSE(reading_);

    EXPECT_THAT(routes("R;1;x\n" + good + "R;999;y\n"), ElementsAre("R;1;x", "A"));
    EXPECT_FALSE(reading_);
    EXPECT_THAT(routes(good + "R;1;x\n"), IsEmpty()) << "a point without a route";
    EXPECT_FALSE(reading_);
    EXPECT_THAT(routes("nothing here"), IsEmpty());
    EXPECT_TRUE(reading_);

    EXPECT_THAT(tracks("N;x\nT;1\nN;y\n"), ElementsAre("N;x 0"));
    EXPECT_TRUE(reading_);
    EXPECT_THAT(host_.boxes, IsEmpty());
}

TEST_F(UploadFilesTest, ReadsTracksWithOrWithoutHeaders) {
    const std::string file =
        "T;1;2;0;4;0\nN;one\nT;1;2;3,5;4;0\nT;1;2;3,5;4;-1\nN;two\nN;three\nT;1;2;0;4;-1\n";
    UploadFormat format = kGarmin;
    for (const std::string protocol : {"A301", "A302"}) {
        format.trackProtocol = protocol;
        EXPECT_THAT(
            tracks(file, format),
            ElementsAre("T;1;2;0;4;0 ", "N;one 0", "T;1;2;3.5;4;-1 one", "T;1;2;3.5;4;-1 one",
                        "N;two 1", "N;three 2", "T;1;2;0;4;-1 three"));
    }
    const auto bare = ElementsAre("T;1;2;0;4;0 ", "T;1;2;3.5;4;-1 one", "T;1;2;3.5;4;-1 one",
                                  "T;1;2;0;4;-1 three");
    format.trackProtocol = "A300";
    EXPECT_THAT(tracks(file, format), bare);
    format = {"MGN", "", "", "A301", "", "."};
    EXPECT_THAT(tracks(file, format), bare);
    EXPECT_TRUE(reading_);
}

TEST_F(UploadFilesTest, AsksForAFileInPlaceOfAMissingOne) {
    const std::string there = folder_.write("été.txt", "W;A;1;2;;3;4;5\n");
    const std::string missing = there + "x";
    std::vector<Waypoint> read;
    host_.fileAnswers = {there};
    EXPECT_TRUE(readWaypointFile(host_, missing, kGarmin, read));
    ASSERT_EQ(host_.fileQuestions.size(), 1U);
    EXPECT_EQ(host_.fileQuestions[0].defaultExtension, ".txt");
    EXPECT_EQ(host_.fileQuestions[0].startFolder, "/fake/application");
    EXPECT_THAT(host_.boxes, IsEmpty());

    EXPECT_FALSE(readWaypointFile(host_, missing, kGarmin, read));
    EXPECT_THAT(read, IsEmpty());
    EXPECT_FALSE(readWaypointFile(host_, folder_.path().string(), kGarmin, read)) << "a folder";
    EXPECT_FALSE(readWaypointFile(host_, there + "\0x"s, kGarmin, read));
    EXPECT_FALSE(readWaypointFile(host_, "", kGarmin, read));
    const FakeHost::Box notFound{"Fichier non trouvé", BoxIcon::critical};
    EXPECT_THAT(host_.boxes,
                ElementsAre(notFound, notFound, notFound,
                            FakeHost::Box{"Fichier non renseigné", BoxIcon::critical}));
}

TEST_F(UploadFilesTest, StandsHugeLinesAndZeroBytes) {
    std::string huge;
    huge.resize(10'000'000, ';');
    EXPECT_THAT(waypoints("W" + huge + "\nW;A;1;2;;3;4;5\n"),
                ElementsAre("W;;0;0;;0;0;0", "W;A;1;2;;3;4;5"));
    EXPECT_THAT(waypoints(huge + "\n\0W\nW;A\0B;1;2;;3;4;5\0\n"s),
                ElementsAre("W;A\0B;1;2;;3;4;5"s));
}

// Lines that are no records are not missed; those behind a bad one are.
TEST_F(UploadFilesTest, CountsWhatAFileLosesAtABadLine) {
    const std::string good = "W;A;1;2;;0;18;0\n";
    waypoints("a remark\n" + good + "\n" + good);
    EXPECT_EQ(reading_.leftOut, 0);
    waypoints("a remark\n" + good + "W;B;1\n\nT;\n" + good + good);
    EXPECT_EQ(reading_.leftOut, 3);
    EXPECT_EQ(reading_.firstLeftOut, 3);
    EXPECT_TRUE(reading_) << "the first is sent all the same";
    routes("R;1;X\nW;A;1;2;;0;18;x\nR;300;Y\n" + good);
    EXPECT_EQ(reading_.leftOut, 2);
    EXPECT_EQ(reading_.firstLeftOut, 3);
}

}  // namespace
}  // namespace marlune
