#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "garmin/records/Waypoint.h"
#include "garmin/values/ErrorOf.h"
#include "support/Image.h"

namespace marlune {
namespace {

const std::string kPosition = "FFFFFF1F 010000C0 ";  // 45 north, 90 west
const std::string kFixed = "'HOME  ' " + kPosition + "4x00 'MY HOUSE' 00 31x20 ";
const std::string kAltitude = "40201843 ";  // 152.126
const std::string kAviation = kFixed + "4x00 56x20 4020 3x20 04 ";

struct TypeCase {
    std::string type;
    std::int16_t symbol;   // of the waypoint that is sent
    std::uint8_t display;  // of the same
    std::size_t shortest;  // length from which on a received record is whole enough
    std::string sent;
    std::string line;  // of the same record when it is received
};

const std::vector<TypeCase> kTypes = {
    {"D100", 178, 2, 18, kFixed, "W;HOME;45;-90;MY HOUSE;0;18;0"},
    {"D101", 178, 2, 63, kFixed + "4x00 B2", "W;HOME;45;-90;MY HOUSE;0;178;0"},
    {"D102", 8196, 2, 64, kFixed + "4x00 0420", "W;HOME;45;-90;MY HOUSE;0;8196;0"},
    {"D103", 178, 2, 60, kFixed + "0A 02", "W;HOME;45;-90;MY HOUSE;0;178;2"},
    {"D104", 178, 2, 65, kFixed + "4x00 B200 05", "W;HOME;45;-90;MY HOUSE;0;178;2"},
    {"D105", 8196, 2, 10, kPosition + "0420 'HOME' 16x00", "W;HOME;45;-90;;0;8196;0"},
    {"D106", 8196, 2, 24, "14x00 " + kPosition + "0420 'HOME' 42x00", "W;HOME;45;-90;;0;8196;0"},
    {"D107", 8196, 2, 59, kFixed + "0F 6x00", "W;HOME;45;-90;MY HOUSE;0;8196;0"},
    {"D108", 8196, 2, 36,
     "00 00 02 60 0420 6x00 12xFF " + kPosition + kAltitude + "12x00 'HOME' 00 'MY HOUSE' 64x00",
     "W;HOME;45;-90;MY HOUSE;152;8196;2"},
    {"D109", 8196, 2, 36,
     "01 00 5F 70 0420 6x00 12xFF " + kPosition + kAltitude +
         "12x00 4xFF 'HOME' 00 'MY HOUSE' 89x00",
     "W;HOME;45;-90;MY HOUSE;152;8196;64"},
    {"D110", 8196, 2, 36,
     "01 00 5F 80 0420 6x00 12xFF " + kPosition + kAltitude +
         "12x00 4xFF 51590469 4xFF 0000 'HOME' 00 'MY HOUSE' 89x00",
     "W;HOME;45;-90;MY HOUSE;152;8196;64"},
    {"D150", 178, 2, 85, "'HOME  ' 0000 04 " + kPosition + kAltitude + "64x00 'MY HOUSE' 00 31x20",
     "W;HOME;45;-90;MY HOUSE;8256;18;0"},
    {"D151", 178, 2, 120, kAviation, "W;HOME;45;-90;MY HOUSE;8256;18;0"},
    {"D152", 178, 2, 120, kAviation, "W;HOME;45;-90;MY HOUSE;8256;18;0"},
    {"D155", 178, 2, 127, kAviation + "B200 05", "W;HOME;45;-90;MY HOUSE;8256;178;2"},
};

Waypoint home() {
    Waypoint waypoint;
    waypoint.ident = "HOME";
    waypoint.latitude = 45;
    waypoint.longitude = -90;
    waypoint.comment = "  MY HOUSE ";
    waypoint.altitude = 0x1.30408p7F;
    return waypoint;
}

TEST(Waypoint, IsSentAndReceivedInEveryType) {
    for (const TypeCase& each : kTypes) {
        Waypoint waypoint = home();
        waypoint.symbol = each.symbol;
        waypoint.display = each.display;
        EXPECT_EQ(waypoint.Coder(each.type), image(each.sent)) << each.type;

        Waypoint received;
        received.comment = "of the one before";
        received.GetAttributes(each.type, image(each.sent));
        EXPECT_EQ(received.getIdent('.'), each.line) << each.type;
    }
}

TEST(Waypoint, D154IsReceivedOnly) {
    Waypoint received;
    received.GetAttributes("D154", image(kAviation + "0420"));
    EXPECT_EQ(received.getIdent('.'), "W;HOME;45;-90;MY HOUSE;8256;8196;0");
    EXPECT_EQ(errorOf([] { (void)home().Coder("D154"); }), RunTimeError::index);
}

TEST(Waypoint, ShortRecordsAreAnErrorOrEndTheirText) {
    for (const TypeCase& each : kTypes) {
        const std::vector<std::uint8_t> whole = image(each.sent);
        for (std::size_t length = 0; length < whole.size(); ++length) {
            const std::vector<std::uint8_t> record(whole.begin(),
                                                   whole.begin() + std::ptrdiff_t(length));
            EXPECT_EQ(errorOf([&] { Waypoint().GetAttributes(each.type, record); }),
                      length < each.shortest ? RunTimeError::index : 0)
                << each.type << ' ' << length;
        }
    }
    for (const std::string type : {"", "D", "D111", "D153", "D1080", "108", "MGN"}) {
        EXPECT_EQ(errorOf([&] { Waypoint().GetAttributes(type, image("200x00")); }),
                  RunTimeError::index);
        EXPECT_EQ(errorOf([&] { (void)home().Coder(type); }), RunTimeError::index);
    }
}

const std::string kD108 = "00 00 00 60 1200 18x00 " + kPosition + kAltitude + "12x00 ";

TEST(Waypoint, OpenTextsEndAtZeroOrAtTheirLimit) {
    const std::vector<std::tuple<std::string, std::string, std::string, std::string>> cases = {
        {"D108", kD108 + "'A' 00 ' b ' 00 'x'", "A", "b"},
        {"D108", kD108 + "51x41 'comment' 00", std::string(51, 'A'), "comment"},
        {"D108", kD108 + "50x41 00 60x62", std::string(50, 'A'), std::string(52, 'b')},
        {"D108", kD108 + "'A'", "A", ""},
        {"D108", kD108, "", ""},
        {"D108", kD108 + "C9 00 'T' E9", "É", "Té"},
        {"D105", kPosition + "1200 41x41", std::string(40, 'A'), ""},
        {"D106", "14x00 " + kPosition + "1200 'A' 00 'LINK'", "A", ""},
        {"D100", "'A' 00 'B' 3x20" + kPosition + "4x00 00 'x' 38x20", std::string("A\0B", 3), ""},
        {"D100", "'ABCDEF'" + kPosition + "4x00 40x62", "ABCDEF", std::string(40, 'b')},
    };
    for (const auto& [type, record, ident, comment] : cases) {
        Waypoint received;
        received.GetAttributes(type, image(record));
        EXPECT_EQ(received.ident, ident) << record;
        EXPECT_EQ(received.comment, comment) << record;
    }
}

TEST(Waypoint, D109AndD110SayWhichTheyAre) {
    const std::string front = " 0420 18x00 " + kPosition + kAltitude;
    const std::vector<std::uint8_t> d109 = image("01 00 3F 70" + front + "16x00 'A' 30x00");
    const std::vector<std::uint8_t> d110 = image("01 00 FF 80" + front + "26x00 'A' 30x00");
    for (const std::string announced : {"D109", "D110"}) {
        Waypoint received;
        received.GetAttributes(announced, d109);
        EXPECT_EQ(received.getIdent('.'), "W;A;45;-90;;152;8196;32");
        received.GetAttributes(announced, d110);
        EXPECT_EQ(received.getIdent('.'), "W;A;45;-90;;152;8196;96");
    }
}

TEST(Waypoint, SymbolsOfOneByteAreMapped) {
    for (const std::string type : {"D103", "D107"}) {
        for (std::uint8_t byte = 0; byte < 17; ++byte) {
            std::vector<std::uint8_t> record = image(kFixed + "7x00");
            record[58] = byte;
            Waypoint waypoint;
            const int error = errorOf([&] { waypoint.GetAttributes(type, record); });
            EXPECT_EQ(error, byte < 16 ? 0 : RunTimeError::index);
            if (byte == 16) {
                waypoint.symbol = 999;
            }
            EXPECT_EQ(waypoint.Coder(type)[58], byte) << "16 stands for a symbol without a byte";
        }
    }
}

TEST(Waypoint, DisplaysFollowTheirType) {
    const std::vector<std::tuple<std::string, int, int>> received = {
        {"D104", 0, 1}, {"D104", 1, 1}, {"D104", 3, 0}, {"D104", 5, 2},   {"D104", 4, 4},
        {"D155", 3, 0}, {"D155", 5, 2}, {"D103", 5, 5}, {"D109", 159, 0}, {"D108", 200, 200},
    };
    const auto at = [](const std::string& type) {
        return type == "D103" ? 59U : type == "D104" ? 64U : type == "D155" ? 126U : 2U;
    };
    for (const auto& [type, byte, display] : received) {
        std::vector<std::uint8_t> record(200);
        record[at(type)] = static_cast<std::uint8_t>(byte);
        Waypoint waypoint;
        waypoint.GetAttributes(type, record);
        EXPECT_EQ(waypoint.display, display) << type << ' ' << byte;
    }
    const std::vector<std::tuple<std::string, int, int>> sent = {
        {"D104", 0, 3},  {"D104", 1, 1},  {"D104", 3, 0},  {"D155", 9, 0},
        {"D109", 0, 31}, {"D109", 1, 63}, {"D110", 1, 63}, {"D109", 96, 96},
    };
    for (const auto& [type, display, byte] : sent) {
        Waypoint waypoint = home();
        waypoint.display = static_cast<std::uint8_t>(display);
        EXPECT_EQ(waypoint.Coder(type)[at(type)], byte) << type << ' ' << display;
    }
}

TEST(Waypoint, AltitudesFollowTheirType) {
    Waypoint waypoint;
    waypoint.altitude = 7;
    waypoint.GetAttributes("D100", image(kFixed));
    EXPECT_EQ(waypoint.altitude, 7) << "a type without altitude leaves it";
    waypoint.GetAttributes("D108", image("32x00 51590469 20x00"));
    EXPECT_EQ(waypoint.altitude, 0) << "the unknown altitude";
    std::vector<std::uint8_t> aviation(124);
    aviation[118] = 0xFD;
    aviation[119] = 0xFF;
    waypoint.GetAttributes("D151", aviation);
    EXPECT_EQ(waypoint.altitude, 65533) << "3 m below the sea";
}

TEST(Waypoint, TextsAreFittedIntoTheirFields) {
    Waypoint waypoint = home();
    waypoint.ident = "ÉTÉ 2007";
    waypoint.comment = "a^b" + std::string(40, 'c');
    const std::vector<std::uint8_t> record = waypoint.Coder("D100");
    EXPECT_EQ(record, image("C9 'T' C9 ' 20'" + kPosition + "4x00 'a' 00 'b' 37x63"));

    waypoint.ident = std::string(20, 'A');
    EXPECT_EQ(errorOf([&] { (void)waypoint.Coder("D105"); }), RunTimeError::index)
        << "no room for its zero byte";
    waypoint.ident.pop_back();
    EXPECT_EQ(waypoint.Coder("D105").back(), 0);
    waypoint.comment = std::string(125 - 48 - 20, 'c');
    EXPECT_EQ(waypoint.Coder("D108").back(), 'c') << "the comment may fill the record";
    waypoint.comment += 'c';
    EXPECT_EQ(errorOf([&] { (void)waypoint.Coder("D108"); }), RunTimeError::index);

    waypoint = home();
    waypoint.latitude = 200;
    EXPECT_EQ(errorOf([&] { (void)waypoint.Coder("D100"); }), RunTimeError::overflow);
}

TEST(Waypoint, WritesItsLineAndTexts) {
    Waypoint waypoint = home();
    waypoint.latitude = 45.5;
    waypoint.longitude = -0.2500004999;
    waypoint.altitude = 2.5F;
    EXPECT_EQ(waypoint.getIdent(','), "W;HOME;45,5;-0,25;MY HOUSE;2;0;0");
    EXPECT_EQ(waypoint.latitudeText(','), "45° 30");
    EXPECT_EQ(waypoint.longitudeText(','), "0° 15,00003");
    waypoint.SetIdent("PT1");
    waypoint.SetPosition(45.5, 2.25);
    EXPECT_EQ(waypoint.getPosition('.'), "PT1Latitude: 45.5 - Longitude: 2.25");
    EXPECT_EQ(waypoint.getNom(), "PT1");
}

TEST(Waypoint, ReadsItsLine) {
    Waypoint waypoint;
    waypoint.SetAttributes("D108", "W; PT 1 ;45.5;-1.25x; a b ;99.5;17.5;1.5;more");
    EXPECT_EQ(waypoint.getIdent('.'), "W;PT 1;45.5;-1.25;a b;100;18;2");
    waypoint.SetAttributes("D103", "W; PT 1 ;45,5;;;;;");
    EXPECT_EQ(waypoint.getIdent('.'), "W;PT-1;45;0;;0;0;0");
    const std::vector<std::pair<std::string, int>> bad = {
        {"W;A;1;2;c;3;4", RunTimeError::index},
        {"", RunTimeError::index},
        {"W;A;1;2;c;1e39;4;5", RunTimeError::overflow},
        {"W;A;1;2;c;3;40000;5", RunTimeError::overflow},
        {"W;A;1;2;c;3;4;256", RunTimeError::overflow},
    };
    for (const auto& each : bad) {
        EXPECT_EQ(errorOf([&] { waypoint.SetAttributes("D108", each.first); }), each.second)
            << each.first;
    }
}

}  // namespace
}  // namespace marlune
