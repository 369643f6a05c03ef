#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "ErrorOf.h"
#include "base/FilePath.h"
#include "marlune/Gpx.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

using Lines = std::vector<std::string>;

class GpxWriterTest : public testing::Test {
protected:
    [[nodiscard]] std::string path(const std::string& name) const {
        return pathText(folder_.path() / name);
    }

    // Writes the lines and returns the file's text.
    std::string write(const Lines& lines) {
        GpxWriter writer;
        for (const auto& line : lines) {
            writer.addLine(line);
        }
        writer.save(path("out.gpx"));
        leftOut_ = writer.leftOut();
        return folder_.read("out.gpx");
    }

    [[nodiscard]] Lines names() const {
        Lines all;
        for (const auto& entry : fs::directory_iterator(folder_.path())) {
            all.push_back(entry.path().filename().string());
        }
        return all;
    }

    TempFolder folder_;
    std::size_t leftOut_ = 0;
};

TEST_F(GpxWriterTest, WritesEveryKindInTheSchemasOrder) {
    const auto text =
        write({"N;Walk", "T;1;2;32874.5;100;-1", "T;1.5;-0.000001;0;0;0", "T;3;4;0;-7;-1",
               "L;RteLink x", "---- W;id;lat;lon ----", "R;3;Home", "W;A;1;2;;0;18;0", "N;More",
               "W;P;9;8;note;50;18;0", "R;4;", "R", "", "X;1;2"});
    EXPECT_EQ(text,
              R"(<?xml version="1.0" encoding="UTF-8"?>
<gpx version="1.1" creator="Marlune" xmlns="http://www.topografix.com/GPX/1/1" xmlns:marlune="urn:marlune:gpx:1">
  <metadata>
    <bounds minlat="1" minlon="-0.000001" maxlat="9" maxlon="8" />
  </metadata>
  <wpt lat="9" lon="8">
    <ele>50</ele>
    <name>P</name>
    <cmt>note</cmt>
  </wpt>
  <rte>
    <name>Home</name>
    <number>3</number>
    <rtept lat="1" lon="2">
      <name>A</name>
    </rtept>
  </rte>
  <rte>
    <number>4</number>
  </rte>
  <trk>
    <name>Walk</name>
    <trkseg>
      <trkpt lat="1" lon="2">
        <ele>100</ele>
        <time>1990-01-01T12:00:00Z</time>
      </trkpt>
      <trkpt lat="1.5" lon="-0.000001" />
    </trkseg>
    <trkseg>
      <trkpt lat="3" lon="4">
        <ele>-7</ele>
      </trkpt>
    </trkseg>
  </trk>
  <trk>
    <name>More</name>
  </trk>
</gpx>
)");
}

TEST_F(GpxWriterTest, TextsSurviveWhateverTheyHold) {
    const struct {
        const char* line;
        const char* back;
    } cases[] = {
        {"W;<A> & \"B\";1;2;]]>;0;18;0", "W;<A> & \"B\";1;2;]]>;0;18;0"},
        {"W;a\x01\x1F z\x7F;1;2;\tc;0;18;0", "W;a   z;1;2;c;0;18;0"},
        {"W;\xC3\x89;1;2;\xEF\xBF\xBF!;0;18;0", "W;\xC3\x89;1;2;!;0;18;0"},
        {"W;\xE9;1;2;;0;18;0", "W;\xC3\xA9;1;2;;0;18;0"},
        // A receiver's texts may hold the separator of the fields.
        {"W;A;B;1;2;c;d;9;18;0", "W;A,B;1;2;c,d;9;18;0"},
        {"W;A;1,5;2,25;;3,5;18;0", "W;A;1.5;2.25;;4;18;0"},
        {"W;A;90;180;;0;18;0", "W;A;90;-180;;0;18;0"},
    };
    for (const auto& c : cases) {
        const auto text = write({c.line});
        EXPECT_THAT(GpxReader(GpxKind::waypoints).readText(text), ElementsAre(c.back)) << c.line;
    }
    write({std::string("W;a\0b;1;2;;0;18;0", 17)});
    EXPECT_THAT(GpxReader(GpxKind::waypoints).readFile(path("out.gpx")),
                ElementsAre("W;a b;1;2;;0;18;0"));
}

TEST_F(GpxWriterTest, CountsWhatIsNoPlace) {
    write({"W;A;91;2;;0;18;0", "W;A;1;-180.5;;0;18;0", "W;A;x;2;;0;18;0", "W;A", "T;180;180;0;0;0",
           "T;1;2", "W;A;1;2;;0;18;0", "W;A;1e400;2;;0;18;0"});
    EXPECT_EQ(leftOut_, 7U);
}

TEST_F(GpxWriterTest, TimesAreUtcAndLeftOutWhenUnknown) {
    const struct {
        const char* days;
        const char* time;
    } cases[] = {
        {"32874.5", "1990-01-01T12:00:00Z"},
        {"39097.524259259261", "2007-01-15T12:34:56Z"},
        {"0", ""},
        {"-5", ""},
        {"1e300", ""},
        {"nan", ""},
        {"2958465.999999984", "9999-12-31T23:59:59.999Z"},
        {"36585,75", "2000-02-29T18:00:00Z"},
        {"2958465.9999999999", ""},
    };
    for (const auto& c : cases) {
        const auto text = write({"T;1;2;" + std::string(c.days) + ";0;0"});
        const std::string time = *c.time == 0 ? "" : "<time>" + std::string(c.time) + "</time>";
        EXPECT_THAT(text, testing::HasSubstr(time)) << c.days;
        EXPECT_EQ(text.find("<time>") == std::string::npos, *c.time == 0) << c.days;
    }
}

TEST_F(GpxWriterTest, ReplacesTheFileAtOnceAndLeavesNothingBeside) {
    (void)folder_.write("out.gpx", "old");
    (void)folder_.write(".out.gpx.part", "mine");
    write({"W;A;1;2;;0;18;0"});
    EXPECT_THAT(names(), testing::UnorderedElementsAre("out.gpx", ".out.gpx.part"));
    EXPECT_EQ(folder_.read(".out.gpx.part"), "mine");
}

TEST_F(GpxWriterTest, AFailureLeavesWhatWasThere) {
    const auto codeOf = [](const std::string& target) {
        return errorOf([&] { GpxWriter().save(target); });
    };
    EXPECT_EQ(codeOf(path("no/such.gpx")), std::errc::no_such_file_or_directory);
    fs::create_directories(path("taken.gpx/inside"));
    EXPECT_NE(codeOf(path("taken.gpx")), std::error_code());
    EXPECT_THAT(names(), ElementsAre("taken.gpx"));
}

}  // namespace
}  // namespace marlune
