#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "garmin/records/Trace.h"
#include "garmin/records/TrkHeader.h"
#include "garmin/values/ErrorOf.h"
#include "support/Image.h"

namespace marlune {
namespace {

// 45 north, 90 west, 01/01/1990 12:00:00, 152.126 m.
const std::string kPoint = "FFFFFF1F 010000C0 40FA0100 ";
const std::string kAltitude = "40201843 ";

TEST(Trace, IsReceivedInEveryType) {
    const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
        {"D300", kPoint + "01", "T;45;-90;32874.5;0;-1"},
        {"D300", kPoint + "00", "T;45;-90;32874.5;0;0"},
        {"D301", kPoint + kAltitude + "4xEE 80", "T;45;-90;32874.5;152;-1"},
        {"D302", kPoint + kAltitude + "8xEE 00", "T;45;-90;32874.5;152;0"},
        {"D303", kPoint + kAltitude, "T;45;-90;32874.5;152;0"},
        {"D304", kPoint + kAltitude + "8xFF", "T;45;-90;32874.5;152;0"},
        {"", kPoint, "T;45;-90;32874.5;0;0"},
        {"D301", kPoint + "51590469 4x00 00", "T;45;-90;32874.5;0;0"},
        {"D300", "FFFFFF1F 010000C0 00000000 00", "T;45;-90;0;0;0"},
        {"D300", "FFFFFF1F 010000C0 FFFFFFFF 00", "T;45;-90;0;0;0"},
    };
    for (const auto& [type, record, line] : cases) {
        Trace point;
        EXPECT_TRUE(point.GetAttributes(type, image(record))) << record;
        EXPECT_EQ(point.getIdent('.'), line) << type << ' ' << record;
    }
    Trace kept;
    kept.pFirst = true;
    EXPECT_TRUE(kept.GetAttributes("D303", image(kPoint + kAltitude)));
    EXPECT_TRUE(kept.pFirst) << "the type has no new-segment byte";
}

TEST(Trace, WithoutPositionIsRefused) {
    const std::vector<std::pair<std::string, bool>> cases = {
        {"FFFFFF7F FFFFFF7F", false}, {"0000B67F 0000B67F", false},  // 179.6
        {"FFFFFF7F 00000000", true},  {"0000007F 0000007F", true},   // 178.6
        {"00000080 00000080", true},                                 // -180
    };
    for (const auto& [position, valid] : cases) {
        Trace point;
        EXPECT_EQ(point.GetAttributes("D300", image(position + " 40FA0100 01")), valid);
        EXPECT_EQ(point.pTime != 0, valid) << position;
    }
}

TEST(Trace, IsSentInThreeTypes) {
    Trace point;
    point.SetAttributes("", "T;45;-90;32874.5;152.1259765625;-1");
    EXPECT_EQ(point.Coder("D300"), image(kPoint + "FF"));
    EXPECT_EQ(point.Coder("D301"), image(kPoint + kAltitude + "4x00 FF"));
    EXPECT_EQ(point.Coder("D302"), image(kPoint + kAltitude + "8x00 FF"));
    point.pFirst = false;
    point.pTime = 0;
    EXPECT_EQ(point.Coder("D300"), image("FFFFFF1F 010000C0 00000000 00"));
    for (const std::string type : {"D303", "D304", "D310", ""}) {
        EXPECT_EQ(errorOf([&] { (void)point.Coder(type); }), RunTimeError::index) << type;
    }
}

TEST(Trace, ShortRecordsAreAnError) {
    const std::vector<std::pair<std::string, std::size_t>> lengths = {
        {"D300", 13}, {"D301", 21}, {"D302", 25}, {"D303", 16}, {"", 12}};
    for (const auto& each : lengths) {
        for (std::size_t length = 0; length < each.second; ++length) {
            const std::vector<std::uint8_t> record(length);
            EXPECT_EQ(errorOf([&] { (void)Trace().GetAttributes(each.first, record); }),
                      RunTimeError::index);
        }
    }
}

TEST(Trace, WritesAndReadsItsLine) {
    Trace point;
    point.SetAttributes("", "T; 1.0000004999;-0.25;39097.5242592593;-3.5;0.0;x");
    EXPECT_EQ(point.getIdent(','), "T;1;-0,25;39097,5242592593;-4;0");
    EXPECT_EQ(point.latitudeText(','), "1° 0,00003");
    EXPECT_EQ(point.longitudeText(','), "0° 15");
    point.SetAttributes("", "T;1,5;2;3,5;4;7");
    EXPECT_EQ(point.getIdent('.'), "T;1;2;3;4;-1") << "a comma ends a number";
    EXPECT_EQ(errorOf([&] { point.SetAttributes("", "T;1;2;3;4"); }), RunTimeError::index);
    EXPECT_EQ(errorOf([&] { point.SetAttributes("", "T;1;2;3;4e38;0"); }), RunTimeError::overflow);
}

TEST(TrkHeader, IsReceivedAndSent) {
    TrkHeader header;
    header.GetAttributes("D310", image("01 FF ' TRK1 ' 00 'x'"));
    EXPECT_EQ(header.getIdent(), "N;TRK1");
    EXPECT_TRUE(header.display);
    EXPECT_EQ(header.colour, 255);
    header.colour = 16;
    header.index = 0x0102;
    EXPECT_EQ(header.Coder("D310"), image("FF 10 'TRK1' 0000"));
    EXPECT_EQ(header.Coder("D312"), image("FF 10 'TRK1' 0000"));
    EXPECT_EQ(header.Coder("D311"), image("02 01 'TRK1' 0000"));
    EXPECT_EQ(header.Coder(""), image("00 00 'TRK1' 0000"));

    header.GetAttributes("D311", image("0500"));
    EXPECT_EQ(header.getIdent(), "N;TRK1") << "D311 is not read";
    EXPECT_EQ(header.index, 0x0102);
    header.GetAttributes("D312", image("00 00"));
    EXPECT_EQ(header.getIdent(), "N;");
    EXPECT_EQ(errorOf([&] { header.GetAttributes("D310", image("01")); }), RunTimeError::index);
}

TEST(TrkHeader, TakesALineOrAName) {
    TrkHeader header;
    header.SetAttributes("D310", "N; My track;x", 3);
    EXPECT_EQ(header.getNom(), " My track");
    EXPECT_EQ(header.index, 3);
    header.SetAttributes("D310", " My track ", 4);
    EXPECT_EQ(header.getNom(), "My track");
}

}  // namespace
}  // namespace marlune
