// Files of records: what goes in comes back, and what others wrote is read.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "SampleRecords.h"
#include "base/FilePath.h"
#include "garmin/values/Semicircles.h"
#include "marlune/RecordFiles.h"
#include "storage/formats/SaveFile.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Collector : public RecordCollector {
public:
    std::vector<std::string> remarks;
    void remark(const std::string& text) override { remarks.push_back(text); }
};

std::string write(const Records& records, FileFormat format, const FileHead& head = {}) {
    std::ostringstream out;
    const auto writer = makeRecordWriter(format, out, head);
    forEachRecord(records, *writer);
    writer->finish();
    return out.str();
}

void readInto(Collector& collector, const std::string& content, FileFormat format) {
    readRecordText(content, format, collector);
}

TEST(RecordFiles, GpxAndCsvGiveBackEverything) {
    const Records sample = sampleRecords();
    for (const FileFormat format : {FileFormat::gpx, FileFormat::csv}) {
        const std::string text = write(sample, format);
        Collector back;
        readInto(back, text, format);
        EXPECT_EQ(write(back.records, format), text);
        // Another format sees the values themselves.
        EXPECT_EQ(write(back.records, FileFormat::geojson), write(sample, FileFormat::geojson));
        EXPECT_THAT(back.remarks, ElementsAre());
        ASSERT_EQ(back.records.waypoints.size(), 4U);
        EXPECT_EQ(back.records.waypoints[1].altitude, 0.0F);
        EXPECT_EQ(back.records.waypoints[2].altitude, std::nullopt);
        EXPECT_EQ(back.records.waypoints[2].symbol, 20);
        EXPECT_EQ(back.records.waypoints[3].symbol, std::nullopt);
        ASSERT_EQ(back.records.routes.size(), 2U);
        EXPECT_EQ(back.records.routes[0].points[0].link->subclass[8], 0xFE);
    }
}

TEST(RecordFiles, LinesForUploadsKeepSemicirclesAndDecimetres) {
    Records all;
    for (const std::int32_t semicircles : {1, -1, 536870911, 536870912, -547358123, 1073741823}) {
        WaypointRecord waypoint;
        waypoint.name = "A";
        waypoint.latitude = degreesFromSemicircles(semicircles);
        waypoint.longitude = 2 * waypoint.latitude;
        waypoint.altitude = 99.9F;
        all.waypoints = {waypoint};
        // By way of GPX, as an upload comes.
        Collector fromGpx;
        readInto(fromGpx, write(all, FileFormat::gpx), FileFormat::gpx);
        const std::string line = write(fromGpx.records, FileFormat::lines);
        double latitude = 0;
        ASSERT_EQ(std::sscanf(line.c_str(), "W;A;%lf;", &latitude), 1) << line;
        EXPECT_EQ(semicirclesFromDegrees(latitude), semicircles) << line;
        EXPECT_THAT(line, HasSubstr(";;99.9;18;0\r\n"));
    }
    Collector sample;
    readInto(sample, write(sampleRecords(), FileFormat::lines), FileFormat::lines);
    EXPECT_EQ(sample.records.waypoints[0].comment, "a, \"b\", c");
    EXPECT_EQ(sample.records.waypoints[0].symbol, 178);
    EXPECT_NEAR(sample.records.tracks[0].points[1].time.value_or(0), 631195200.5, 1e-5);
    EXPECT_EQ(sample.records.routes[0].points[0].link->name, "THE LINK");
}

TEST(RecordFiles, RoutesWithoutANumberAreCounted) {
    const std::pair<FileFormat, const char*> files[] = {
        {FileFormat::gpx, "<gpx><rte/><rte><number>-1</number></rte></gpx>"},
        {FileFormat::csv, "kind,latitude,longitude,number\nroute,,,\nroute,,,-1\n"},
        {FileFormat::lines, "R;;A\r\nR;70000;B\r\n"},
    };
    for (const auto& [format, text] : files) {
        Collector read;
        readInto(read, text, format);
        ASSERT_EQ(read.records.routes.size(), 2U) << text;
        EXPECT_EQ(read.records.routes[0].number, 1) << text;
        EXPECT_EQ(read.records.routes[1].number, 2) << text;
    }
}

TEST(RecordFiles, GpxOfOtherProgramsIsUnderstood) {
    Collector back;
    readInto(back,
             "<gpx><wpt lat='1' lon='2'><sym>Flag, Blue</sym><extensions><x:WaypointExtension>"
             "<x:Proximity>7</x:Proximity><x:Depth>2.5</x:Depth></x:WaypointExtension>"
             "</extensions></wpt><wpt lat='1' lon='2'><sym>Pirate Ship</sym></wpt>"
             "<wpt lat='1' lon='2'><sym>Pirate Ship</sym></wpt><wpt lat='100' lon='2'/>"
             "<rte><rtept lat='1' lon='2'><link href='http://example.org'/></rtept></rte>"
             "<trk><trkseg><trkpt lat='1' lon='2'><extensions><t:TrackPointExtension>"
             "<t:atemp>21.5</t:atemp></t:TrackPointExtension></extensions></trkpt></trkseg></trk>"
             "</gpx>",
             FileFormat::gpx);
    EXPECT_EQ(symbolName(back.records.waypoints.at(0).symbol.value_or(0)), "Flag, Blue");
    EXPECT_EQ(back.records.waypoints.at(0).proximity, 7.0F);
    EXPECT_EQ(back.records.waypoints.at(0).depth, 2.5F);
    EXPECT_EQ(back.records.waypoints.at(2).symbol, 18);
    EXPECT_EQ(back.records.tracks.at(0).points.at(0).temperature, 21.5F);
    EXPECT_FALSE(back.records.routes.at(0).points.at(0).link);
    EXPECT_THAT(back.remarks,
                ElementsAre(HasSubstr("\"Pirate Ship\" is not known"), HasSubstr("1 points")));
}

TEST(RecordFiles, CsvOfOtherProgramsIsUnderstood) {
    Collector back;
    readInto(back,
             "\xEF\xBB\xBFName;Lat;Lon;Ele;Sym\r\n\r\n\"A;\"\"1\"\"\";45,5;-1.25;0;Bank\r\n"
             "B;x;y;;\r\nC;1;2\n",
             FileFormat::csv);
    ASSERT_EQ(back.records.waypoints.size(), 2U);
    EXPECT_EQ(back.records.waypoints[0].name, "A;\"1\"");
    EXPECT_EQ(back.records.waypoints[0].latitude, 45.5);
    EXPECT_EQ(back.records.waypoints[0].altitude, 0.0F);
    EXPECT_EQ(back.records.waypoints[0].symbol, 6);
    EXPECT_EQ(back.remarks.size(), 1U);
    for (const char* broken : {"", "a,b\n1,2\n", "lat,lon\n\"1,2\n"}) {
        Collector none;
        EXPECT_THROW(readInto(none, broken, FileFormat::csv), FileParseError) << broken;
    }
}

// What would fill the memory ends the reading instead.
TEST(RecordFiles, BombsAreRefused) {
    std::string nested = "<gpx>";
    for (int i = 0; i < 800'000; ++i) {
        nested += "<e>";
    }
    std::string names = "<gpx>";
    for (int i = 0; i < 700'000; ++i) {
        names += "<e" + std::to_string(i) + "/>";
    }
    std::string declarations = "<!DOCTYPE gpx [";
    for (int i = 0; i < 700'000; ++i) {
        declarations += "<!ENTITY e" + std::to_string(i) + " 'x'>";
    }
    const std::string attribute = "<gpx><wpt lat='" + std::string(8U << 20U, '1') + "'/></gpx>";
    for (const std::string_view bomb :
         {std::string_view(nested), std::string_view(names), std::string_view(declarations),
          std::string_view(attribute)}) {
        Collector none;
        EXPECT_THROW(readInto(none, std::string(bomb), FileFormat::gpx), FileParseError)
            << bomb.substr(0, 20);
    }
    Collector one;
    readInto(
        one,
        "<gpx><wpt lat='1' lon='2'><name>" + std::string(8U << 20U, 'x') + "</name></wpt></gpx>",
        FileFormat::gpx);
    EXPECT_EQ(one.records.waypoints.at(0).name.size(), 65536U) << "a long text is cut";
    for (const FileFormat format : {FileFormat::csv, FileFormat::lines}) {
        Collector none;
        EXPECT_THROW(readInto(none, std::string(4U << 20U, 'x'), format), FileParseError);
    }
}

using Json = nlohmann::json;

// By RFC 7946: what a geometry of the type holds, from the outside in.
void expectPosition(const Json& position) {
    ASSERT_TRUE(position.is_array() && (position.size() == 2 || position.size() == 3));
    EXPECT_LE(std::abs(position[0].get<double>()), 180);
    EXPECT_LE(std::abs(position[1].get<double>()), 90);
}

void expectLine(const Json& line) {
    ASSERT_TRUE(line.is_array());
    EXPECT_GE(line.size(), 2U);
    for (const Json& position : line) {
        expectPosition(position);
    }
}

TEST(RecordFiles, GeoJsonKeepsToTheRules) {
    const Json file = Json::parse(write(sampleRecords(), FileFormat::geojson));
    EXPECT_EQ(file.at("type"), "FeatureCollection");
    std::string types;
    for (const Json& feature : file.at("features")) {
        EXPECT_EQ(feature.at("type"), "Feature");
        EXPECT_TRUE(feature.at("properties").is_object());
        const Json& geometry = feature.at("geometry");
        types += (geometry.is_null() ? "null" : geometry.at("type").get<std::string>()) + " ";
        if (types.ends_with("MultiLineString ")) {
            for (const Json& line : geometry.at("coordinates")) {
                expectLine(line);
            }
        } else if (types.ends_with("LineString ")) {
            expectLine(geometry.at("coordinates"));
        } else if (types.ends_with("Point ")) {
            expectPosition(geometry.at("coordinates"));
        }
    }
    EXPECT_EQ(types, "Point Point Point Point LineString null MultiLineString null ");
    const Json& walk = file.at("features").at(6);
    EXPECT_EQ(walk.at("properties").at("coordTimes").dump(),
              R"([["1990-01-01T12:00:00.500Z","1990-01-01T12:00:00.500Z"],[null,null]])");
    EXPECT_EQ(walk.at("properties").at("depths").dump(), "[[null,12.5],[null]]");
    EXPECT_EQ(walk.at("geometry").at("coordinates").at(0).at(1).dump(), "[2.0,1.0,-3.25]");
}

TEST(RecordFiles, KmlTracksKeepTheirTimes) {
    Records all;
    TrackPointRecord point;
    point.time = 631195200;
    point.altitude = 12.5F;
    point.segmentStart = true;
    TrackRecord track;
    track.name = "T";
    track.points = {point, point};
    all.tracks = {track};
    const std::string timed = write(all, FileFormat::kml);
    EXPECT_THAT(timed, HasSubstr("<gx:MultiTrack>"));
    EXPECT_THAT(timed, HasSubstr("<when>1990-01-01T12:00:00Z</when>\n"));
    EXPECT_THAT(timed, HasSubstr("<gx:coord>0 0 12.5</gx:coord>\n"));
    all.tracks[0].points[1].time.reset();
    EXPECT_THAT(write(all, FileFormat::kml), HasSubstr("<coordinates>0,0,12.5</coordinates>"));
}

TEST(RecordFiles, WhatIsNoPlaceIsCounted) {
    Records all;
    all.waypoints.resize(3);
    all.waypoints[0].latitude = 90.5;
    all.waypoints[1].longitude = std::nan("");
    for (const FileFormat format : {FileFormat::gpx, FileFormat::kml, FileFormat::geojson,
                                    FileFormat::csv, FileFormat::lines}) {
        std::ostringstream out;
        const auto writer = makeRecordWriter(format, out);
        forEachRecord(all, *writer);
        writer->finish();
        EXPECT_EQ(writer->leftOut(), 2U);
    }
}

// A mount of a unit that speaks MTP: nothing is renamed over a file, and perhaps nothing at all.
class MtpNames : public FileNames {
public:
    bool renames = true;

    void rename(const std::filesystem::path& from, const std::filesystem::path& to,
                std::error_code& error) override {
        error = std::make_error_code(std::errc::operation_not_supported);
        if (renames && !std::filesystem::exists(to)) {
            FileNames::rename(from, to, error);
        }
    }
};

TEST(SaveFile, GetsAlongWithoutRenamingOverAFile) {
    const TempFolder folder;
    const std::string path = pathText(folder.path() / "Tour.gpx");
    MtpNames names;
    const auto save = [&](const char* text) {
        const auto write = [&](std::ostream& out) { out << text; };
        return saveFile(path, write, Replacement::newName, names).filename();
    };
    EXPECT_EQ(save("one"), "Tour.gpx");
    EXPECT_EQ(save("two"), "Tour.gpx");
    EXPECT_EQ(folder.read("Tour.gpx"), "two");
    names.renames = false;
    EXPECT_EQ(save("three"), "Tour-2.gpx");
    EXPECT_FALSE(std::filesystem::exists(path)) << "one of both stays";
    EXPECT_EQ(folder.read("Tour-2.gpx"), "three");
    EXPECT_THROW(saveFile(
                     path, [](std::ostream& out) { out.setstate(std::ios::badbit); },
                     Replacement::newName, names),
                 std::system_error);
    EXPECT_EQ(folder.read("Tour-2.gpx"), "three");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(RecordFiles, FormatsAreKnownByTheirNames) {
    EXPECT_EQ(fileFormatOf("/a.b/C.GPX"), FileFormat::gpx);
    EXPECT_EQ(fileFormatOf("x.json"), FileFormat::geojson);
    EXPECT_EQ(fileFormatOf("x.gpx.old"), std::nullopt);
    EXPECT_EQ(fileFormatNamed("Lines"), FileFormat::lines);
    EXPECT_EQ(symbolName(7680 + 511), "Custom 511");
    EXPECT_EQ(symbolNamed("Custom 0"), 7680);
    EXPECT_EQ(symbolNamed("Custom 512"), std::nullopt);
    EXPECT_EQ(symbolNamed(symbolName(16402)), 16402);
}

TEST(RecordFiles, RolledOverDatesMoveForward) {
    constexpr double kWeeks1024 = 1024 * 7 * 86400.0;
    constexpr double kReference = 1790000000;  // 2026
    const struct {
        double time;
        double fixed;
    } cases[] = {
        {kReference - kWeeks1024, kReference - kWeeks1024},
        {kReference - kWeeks1024 - 1, kReference - 1},
        {kReference - 2 * kWeeks1024 - 1, kReference - 1},
        // A receiver of the day after the reference, but not of the year after it.
        {kReference - 2 * kWeeks1024 + 86400, kReference + 86400},
        {kReference - 2 * kWeeks1024 + 400 * 86400.0, kReference - kWeeks1024 + 400 * 86400.0},
        {kReference, kReference},
    };
    for (const auto& c : cases) {
        Records all;
        all.waypoints.resize(1);
        all.waypoints[0].time = c.time;
        EXPECT_EQ(fixRolledOverDates(all, kReference), c.time == c.fixed ? 0 : 1) << c.time;
        EXPECT_EQ(all.waypoints[0].time, c.fixed);
    }
    EXPECT_GT(buildDate(), 1700000000);
}

}  // namespace
}  // namespace marlune
