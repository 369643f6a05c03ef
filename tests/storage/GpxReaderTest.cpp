#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ErrorOf.h"
#include "marlune/Gpx.h"

namespace marlune {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

Lines read(GpxKind kind, const std::string& content, char separator = '.') {
    return GpxReader(kind, separator).readText(content);
}

std::string gpx(const std::string& content) {
    return "<?xml version='1.0'?>\n<gpx version='1.1' creator='x'>" + content + "</gpx>";
}

TEST(GpxReader, WaypointsBecomeLines) {
    const struct {
        const char* element;
        const char* line;
    } cases[] = {
        {"<wpt lat='45.5' lon='-1.25'><ele>100.5</ele><name>PT 1</name><cmt>here</cmt></wpt>",
         "W;PT 1;45.5;-1.25;here;100;18;0"},
        // Halves go to the even neighbour, coordinates keep six decimals.
        {"<wpt lat='0.0000005' lon='1.00000151'><ele>101.5</ele><name>A</name></wpt>",
         "W;A;0;1.000002;;102;18;0"},
        {"<wpt lat='1' lon='2'><name>A</name><desc>told</desc></wpt>", "W;A;1;2;told;0;18;0"},
        {"<wpt lat='1' lon='2'><name>A</name><cmt>first</cmt><desc>told</desc></wpt>",
         "W;A;1;2;first;0;18;0"},
        {"<wpt lat='1' lon='2'/>", "W;;1;2;;0;18;0"},
        {"<wpt lat='+1.0' lon=' -0.0 '><ele>1e300</ele></wpt>", "W;;1;0;;0;18;0"},
        // What would break a line is replaced.
        {"<wpt lat='1' lon='2'><name> a;b\n&#9;c&#x7F; </name></wpt>", "W;a,b  c;1;2;;0;18;0"},
        {"<wpt lat='1' lon='2'><name>A<!-- no -->&amp;<![CDATA[<B>]]></name></wpt>",
         "W;A&<B>;1;2;;0;18;0"},
        {"<wpt lat='1' lon='2'><name>\xC3\x89t\xC3\xA9</name></wpt>",
         "W;\xC3\x89t\xC3\xA9;1;2;;0;18;0"},
        // Bytes of the single-byte code page in a file that says UTF-8.
        {"<wpt lat='1' lon='2'><name>\xC9t\xE9</name></wpt>", "W;\xC3\x89t\xC3\xA9;1;2;;0;18;0"},
    };
    for (const auto& c : cases) {
        EXPECT_THAT(read(GpxKind::waypoints, gpx(c.element)), ElementsAre(c.line)) << c.element;
    }
}

TEST(GpxReader, PointsThatAreNoPlaceAreLeftOut) {
    for (const char* attributes :
         {"", "lat='1'", "lat='x' lon='2'", "lat='nan' lon='inf'", "lat='90.01' lon='2'",
          "lat='1' lon='-180.5'", "lat='1e999' lon='2'", "lat='1 2' lon='2'"}) {
        const std::string point = attributes + std::string("><name>A</name></wpt>");
        EXPECT_THAT(read(GpxKind::waypoints, gpx("<wpt " + point)), IsEmpty()) << attributes;
    }
}

TEST(GpxReader, NumbersTakeTheSeparatorThatTheCallerAsksFor) {
    const auto file =
        gpx("<trk><trkseg><trkpt lat='1.5' lon='-2.25'>"
            "<time>1990-01-01T12:00:00Z</time></trkpt></trkseg></trk>");
    EXPECT_THAT(read(GpxKind::tracks, file, ','), ElementsAre("N;", "T;1,5;-2,25;32874,5;0;-1"));
}

TEST(GpxReader, TracksStartEachSegmentAnew) {
    const auto file =
        gpx("<wpt lat='9' lon='9'/>"
            "<trk><name>One</name><trkseg><trkpt lat='1' lon='1'><ele>7</ele></trkpt>"
            "<trkpt lat='2' lon='2'/></trkseg><trkseg/>"
            "<trkseg><trkpt lat='99' lon='0'/><trkpt lat='3' lon='3'/></trkseg></trk>"
            "<trk><name>Two</name></trk>");
    EXPECT_THAT(read(GpxKind::tracks, file),
                ElementsAre("N;One", "T;1;1;0;7;-1", "T;2;2;0;0;0", "T;3;3;0;0;-1", "N;Two"));
}

TEST(GpxReader, TimesAreUtcDays) {
    const struct {
        const char* time;
        const char* days;
    } cases[] = {
        {"1990-01-01T12:00:00Z", "32874.5"},
        {"1990-01-01T12:00:00", "32874.5"},
        {"1990-01-01T14:30:00+02:30", "32874.5"},
        {"1989-12-31T23:00:00-1300", "32874.5"},
        {"1990-01-01T00:00:00.0Z", "32874"},
        {"1990-01-01T24:00:00Z", "32875"},
        {" 1990-01-01T12:00:00Z\n", "32874.5"},
        {"1990-02-30T12:00:00Z", "0"},
        {"1990-01-01", "0"},
        {"1990-01-01T12:00:00Zulu", "0"},
        {"1990-01-01T99:00:00Z", "0"},
        {"yesterday", "0"},
    };
    for (const auto& c : cases) {
        const auto file = gpx("<trk><trkseg><trkpt lat='1' lon='1'><time>" + std::string(c.time) +
                              "</time></trkpt></trkseg></trk>");
        EXPECT_EQ(read(GpxKind::tracks, file).at(1), "T;1;1;" + std::string(c.days) + ";0;-1")
            << c.time;
    }
}

TEST(GpxReader, RoutesAreNumberedAcrossFiles) {
    GpxReader reader(GpxKind::routes);
    EXPECT_THAT(reader.readText(gpx("<rte><name>Home</name><number>7</number>"
                                    "<rtept lat='1' lon='2'><name>A</name></rtept></rte>")),
                ElementsAre("R;1;Home", "W;A;1;2;;0;18;0"));
    EXPECT_THAT(reader.readText(gpx("<rte/><rte><name>Back</name></rte>")),
                ElementsAre("R;2;ROUTE 2", "R;3;Back"));
}

TEST(GpxReader, NamespacesAndEncodingsDoNotMatter) {
    EXPECT_THAT(read(GpxKind::waypoints,
                     "<g:gpx xmlns:g='urn:x'><g:wpt lat='1' lon='2'>"
                     "<g:name>A</g:name></g:wpt></g:gpx>"),
                ElementsAre("W;A;1;2;;0;18;0"));
    EXPECT_THAT(read(GpxKind::waypoints,
                     "<?xml version='1.0' encoding='ISO-8859-1'?><gpx>"
                     "<wpt lat='1' lon='2'><name>\xC9</name></wpt></gpx>"),
                ElementsAre("W;\xC3\x89;1;2;;0;18;0"));
    std::string wide = "\xFF\xFE";
    for (const char c : std::string("<gpx><wpt lat='1' lon='2'/></gpx>")) {
        wide += {c, '\0'};
    }
    EXPECT_THAT(read(GpxKind::waypoints, wide), ElementsAre("W;;1;2;;0;18;0"));
}

TEST(GpxReader, EntitiesOfTheDocumentDoNotExpand) {
    std::string file = "<!DOCTYPE gpx [<!ENTITY a0 'ha'>";
    std::string before = "&a0;";
    for (int i = 1; i <= 30; ++i) {
        const std::string name = std::to_string(i);
        file.append("<!ENTITY a").append(name).append(" '");
        file.append(before).append(before).append(before).append("'>");
        before = "&a" + name + ";";
    }
    file +=
        "<!ENTITY file SYSTEM 'file:///etc/passwd'>]>"
        "<gpx><wpt lat='1' lon='2'><name>&a30;</name><cmt>&file;</cmt></wpt></gpx>";
    EXPECT_THAT(read(GpxKind::waypoints, file), ElementsAre("W;&a30,;1;2;&file,;0;18;0"));
}

TEST(GpxReader, DeepNestingIsNoDanger) {
    std::string open;
    std::string close;
    for (int i = 0; i < 200'000; ++i) {
        open += "<e>";
        close += "</e>";
    }
    EXPECT_THAT(read(GpxKind::waypoints, gpx(open + close + "<wpt lat='1' lon='2'/>")),
                ElementsAre("W;;1;2;;0;18;0"));
}

TEST(GpxReader, TellsWhereAFileIsBroken) {
    try {
        read(GpxKind::waypoints, "<gpx>\n  <wpt lat='1' lon='2'>\n  \xC3\xA9</oops>\n</gpx>");
        FAIL() << "no error";
    } catch (const GpxParseError& error) {
        EXPECT_STRNE(error.what(), "");
        EXPECT_EQ(error.place().line, 3U);
        EXPECT_EQ(error.place().source, "\xC3\xA9</oops>");
        EXPECT_GE(error.place().position, 5U);
        EXPECT_EQ(error.place().offset, 6 + 24 + error.place().position - 1);
    }
    for (const char* broken : {"", "text", "<html/>", "<gpx", "<gpx><wpt lat='1'", "\0"}) {
        EXPECT_THROW(read(GpxKind::waypoints, broken), GpxParseError) << broken;
    }
}

TEST(GpxReader, TellsTheSystemsErrors) {
    const auto codeOf = [](const std::string& path) {
        return errorOf([&] { GpxReader(GpxKind::waypoints).readFile(path); });
    };
    EXPECT_EQ(codeOf(testing::TempDir() + "/no/such.gpx"), std::errc::no_such_file_or_directory);
    const auto folder = codeOf(testing::TempDir());
    EXPECT_TRUE(folder == std::errc::is_a_directory || folder == std::errc::permission_denied)
        << "Windows does not open a folder at all";
}

}  // namespace
}  // namespace marlune
