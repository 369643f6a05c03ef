#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <pugixml.hpp>
#include <system_error>

#include "host/FilePath.h"
#include "marlune/Gpx.h"

namespace marlune {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

using Lines = std::vector<std::string>;

class GpxWriterTest : public testing::Test {
protected:
    void SetUp() override {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        folder_ = fs::path(testing::TempDir()) / (std::string("gpx-") + test->name());
        fs::remove_all(folder_);
        fs::create_directory(folder_);
    }
    void TearDown() override { fs::remove_all(folder_); }

    [[nodiscard]] std::string path(const std::string& name) const {
        return pathText(folder_ / name);
    }

    // Writes the lines and returns the file's text.
    std::string write(const Lines& lines) {
        GpxWriter writer;
        for (const auto& line : lines) {
            writer.addLine(line);
        }
        writer.save(path("out.gpx"));
        leftOut_ = writer.leftOut();
        return read("out.gpx");
    }

    [[nodiscard]] std::string read(const std::string& name) const {
        std::ifstream in(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    [[nodiscard]] Lines names() const {
        Lines all;
        for (const auto& entry : fs::directory_iterator(folder_)) {
            all.push_back(entry.path().filename().string());
        }
        return all;
    }

    fs::path folder_;
    std::size_t leftOut_ = 0;
};

// What the GPX 1.1 schema lets stand in an element, in its order (of what can occur here).
const std::map<std::string, Lines>& schema() {
    static const Lines point = {"ele", "time", "name", "cmt"};
    static const std::map<std::string, Lines> order = {{"gpx", {"wpt", "rte", "trk"}},
                                                       {"wpt", point},
                                                       {"rtept", point},
                                                       {"trkpt", point},
                                                       {"trkseg", {"trkpt"}},
                                                       {"trk", {"name", "trkseg"}},
                                                       {"rte", {"name", "number", "rtept"}}};
    return order;
}

void expectDecimal(const char* text, double least, double below, bool including) {
    EXPECT_EQ(std::string(text).find_first_not_of("-0123456789."), std::string::npos) << text;
    EXPECT_GE(std::stod(text), least);
    EXPECT_TRUE(std::stod(text) < below || (including && std::stod(text) == below)) << text;
}

void expectValid(const pugi::xml_node& node) {
    const std::string name = node.name();
    const auto rule = schema().find(name);
    if (rule == schema().end()) {
        EXPECT_FALSE(node.first_element_by_path("*")) << name;
        return;
    }
    if (name == "wpt" || name == "rtept" || name == "trkpt") {
        expectDecimal(node.attribute("lat").value(), -90, 90, true);
        expectDecimal(node.attribute("lon").value(), -180, 180, false);
    }
    std::size_t at = 0;
    for (const auto& child : node.children()) {
        const auto& order = rule->second;
        while (at < order.size() && order[at] != child.name()) {
            ++at;
        }
        ASSERT_LT(at, order.size()) << child.name() << " is out of place in " << name;
        expectValid(child);
    }
}

void expectValidFile(const std::string& text) {
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(text.c_str())) << text;
    const auto root = document.document_element();
    EXPECT_STREQ(root.name(), "gpx");
    EXPECT_STREQ(root.attribute("xmlns").value(), "http://www.topografix.com/GPX/1/1");
    EXPECT_STREQ(root.attribute("version").value(), "1.1");
    EXPECT_STRNE(root.attribute("creator").value(), "");
    expectValid(root);
}

TEST_F(GpxWriterTest, WritesEveryKindInTheSchemasOrder) {
    const auto text = write({"N;Walk", "T;1;2;32874.5;100;-1", "T;1.5;2;0;0;0", "T;3;4;0;-7;-1",
                             "L;RteLink x", "---- W;id;lat;lon ----", "R;3;Home", "W;A;1;2;;0;18;0",
                             "N;More", "W;P;9;8;note;50;18;0", "R;4;", "R", "", "X;1;2"});
    expectValidFile(text);
    EXPECT_EQ(text,
              R"(<?xml version="1.0" encoding="UTF-8"?>
<gpx version="1.1" creator="Marlune" xmlns="http://www.topografix.com/GPX/1/1">
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
      <trkpt lat="1.5" lon="2" />
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
        expectValidFile(text);
        EXPECT_THAT(GpxReader(GpxKind::waypoints).readText(text), ElementsAre(c.back)) << c.line;
    }
    write({std::string("W;a\0b;1;2;;0;18;0", 17)});
    EXPECT_THAT(GpxReader(GpxKind::waypoints).readFile(path("out.gpx")),
                ElementsAre("W;a b;1;2;;0;18;0"));
}

TEST_F(GpxWriterTest, CountsWhatIsNoPlace) {
    expectValidFile(write({"W;A;91;2;;0;18;0", "W;A;1;-180.5;;0;18;0", "W;A;x;2;;0;18;0", "W;A",
                           "T;180;180;0;0;0", "T;1;2", "W;A;1;2;;0;18;0", "W;A;1e400;2;;0;18;0"}));
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
        pugi::xml_document document;
        document.load_string(text.c_str());
        const auto time = document.first_element_by_path("gpx/trk/trkseg/trkpt/time");
        EXPECT_STREQ(time.text().get(), c.time) << c.days;
        EXPECT_EQ(static_cast<bool>(time), *c.time != 0) << c.days;
    }
}

TEST_F(GpxWriterTest, LinesComeBackAsTheyWent) {
    const Lines tracks = {"N;Walk", "T;45.123457;-1.5;39097.52425925926;120;-1",
                          "T;45.123458;-1.5;39097.524305555555;0;0", "N;Ride", "T;0;0;0;5;-1"};
    const Lines routes = {"R;1;Home", "W;A;1;2;x;3;18;0", "W;B;-1.000001;2;;0;18;0", "R;2;Back"};
    write(tracks);
    EXPECT_EQ(GpxReader(GpxKind::tracks).readFile(path("out.gpx")), tracks);
    write(routes);
    EXPECT_EQ(GpxReader(GpxKind::routes).readFile(path("out.gpx")), routes);
}

TEST_F(GpxWriterTest, ReplacesTheFileAtOnceAndLeavesNothingBeside) {
    std::ofstream(path("out.gpx")) << "old";
    std::ofstream(path(".out.gpx.part")) << "mine";
    write({"W;A;1;2;;0;18;0"});
    EXPECT_THAT(names(), testing::UnorderedElementsAre("out.gpx", ".out.gpx.part"));
    EXPECT_EQ(read(".out.gpx.part"), "mine");
}

TEST_F(GpxWriterTest, AFailureLeavesWhatWasThere) {
    const auto codeOf = [](const std::string& target) {
        try {
            GpxWriter().save(target);
        } catch (const std::system_error& error) {
            return error.code();
        }
        return std::error_code();
    };
    EXPECT_EQ(codeOf(path("no/such.gpx")), std::errc::no_such_file_or_directory);
    fs::create_directories(path("taken.gpx/inside"));
    EXPECT_NE(codeOf(path("taken.gpx")), std::error_code());
    EXPECT_THAT(names(), ElementsAre("taken.gpx"));
}

}  // namespace
}  // namespace marlune
