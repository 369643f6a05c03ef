// Every record type against an image written by hand. One place serves all: 45 degrees north is
// 20000000 semicircles (hexadecimal), 90 west is C0000000; 1042 metres are 44824000 as a single and
// 0412 as a number; 150 metres are 43160000; the mark for "unknown" is 69045951.
#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "receivers/garmin/PlaceRecords.h"
#include "receivers/garmin/RealTime.h"
#include "receivers/garmin/RouteRecords.h"
#include "receivers/garmin/TrackRecords.h"
#include "support/Image.h"

namespace marlune::receivers::garmin {
namespace {

using Bytes = std::vector<std::uint8_t>;

const Place kCamp = {"\xC3\x89TAPE", 45, -90, "Abri d'\xC3\xA9t\xC3\xA9", 1042, 151, 2};

// The position, and ident and comment in their fixed fields (É is C9, é is E9).
const std::string kHere = " 00 00 00 20 00 00 00 C0 ";
const std::string kIdent = "C9 'TAPE ' ";
const std::string kComment = " 'Abri d' 27 E9 't' E9 30x20 ";
const std::string kCore = kIdent + kHere + "4x00" + kComment;
// What D108 to D110 have from the symbol to the country, with and without a distance.
const std::string kModern = " 97 00 6x00 12xFF " + kHere + "00 40 82 44 51 59 04 69 ";
const std::string kTexts = " C9 'TAPE' 00 'Abri d' 27 E9 't' E9 00 4x00";
const std::string kUnknown = " 51 59 04 69 ";
const std::string kAviation = kCore + "4x00 30x20 24x20 2x20 12 04 2x20 00 ";

struct PlaceCase {
    const char* type;
    std::string image;
    // What is left of the place: symbol, display, whether comment and altitude survive.
    int symbol;
    int display;
    bool comment;
    bool altitude;
};

std::vector<PlaceCase> placeCases() {
    return {
        {"D100", kCore, 18, 0, true, false},
        {"D101", kCore + "4x00 97", 151, 0, true, false},
        {"D102", kCore + "4x00 97 00", 151, 0, true, false},
        {"D103", kCore + "0B 02", 151, 2, true, false},
        {"D104", kCore + "4x00 97 00 05", 151, 2, true, false},
        {"D105", kHere + "97 00 C9 'TAPE' 00", 151, 0, false, false},
        {"D106", "14x00" + kHere + "97 00 C9 'TAPE' 00 00", 151, 0, false, false},
        {"D107", kCore + "0B 02 4x00 00", 151, 2, true, false},
        {"D108", "00 FF 02 60" + kModern + kUnknown + "4x20" + kTexts, 151, 2, true, true},
        {"D109", "01 00 5F 70" + kModern + kUnknown + "4x20 4xFF" + kTexts, 151, 2, true, true},
        {"D110", "01 00 5F 80" + kModern + kUnknown + "4x20 4xFF" + kUnknown + "4xFF 2x00" + kTexts,
         151, 2, true, true},
        {"D150", kIdent + "2x20 04" + kHere + "12 04 24x20 2x20 30x20 10x20" + kComment, 18, 0,
         true, true},
        {"D151", kAviation + "02", 18, 0, true, true},
        {"D152", kAviation + "04", 18, 0, true, true},
        {"D154", kAviation + "04 97 00", 151, 0, true, true},
        {"D155", kAviation + "04 97 00 05", 151, 2, true, true},
    };
}

TEST(PlaceRecords, EveryTypeHasItsImageAndIsReadFromIt) {
    for (const PlaceCase& each : placeCases()) {
        const Bytes whole = image(each.image);
        EXPECT_EQ(placeRecord(each.type, kCamp), whole) << each.type;
        Place left = kCamp;
        left.symbol = each.symbol;
        left.display = each.display;
        left.comment = each.comment ? kCamp.comment : "";
        left.altitude = each.altitude ? kCamp.altitude : std::nullopt;
        EXPECT_EQ(placeOf(each.type, whole), left) << each.type;
        for (std::size_t size = 0; size < whole.size(); ++size) {
            try {
                placeOf(each.type, std::span(whole).first(size));
            } catch (const std::out_of_range&) {
                continue;  // never past the record
            }
        }
    }
    EXPECT_THROW(placeOf("D154", Bytes(125)), std::out_of_range) << "its symbol ends at byte 126";
}

TEST(PlaceRecords, KeepTheirOddities) {
    // A symbol outside the sixteen of D103, a byte outside them.
    Place place = kCamp;
    place.symbol = 999;
    EXPECT_EQ(placeRecord("D103", place)[58], 0);
    Bytes wild = image(kCore + "10 00");
    EXPECT_EQ(placeOf("D103", wild).symbol, 18);
    // Display options by their odd numbers.
    const int odd[][2] = {{3, 0}, {1, 1}, {5, 2}, {0, 1}};
    for (const auto& [byte, display] : odd) {
        Bytes record = image(kCore + "4x00 97 00 00");
        record.back() = static_cast<std::uint8_t>(byte);
        EXPECT_EQ(placeOf("D104", record).display, display);
    }
    // The attribute tells D109 from D110, whatever was announced.
    EXPECT_EQ(placeOf("D109", image(placeCases()[10].image)), kCamp);
    EXPECT_EQ(placeOf("D110", image(placeCases()[9].image)), kCamp);
    // A shorter D150, with the comment right behind the name.
    const Place shorter =
        placeOf("D150", image(kIdent + "2x20 04" + kHere + "F4 FF 56x20" + kComment));
    EXPECT_EQ(shorter.comment, kCamp.comment);
    EXPECT_EQ(shorter.altitude, -12);
    // Unknown altitudes.
    place.altitude.reset();
    EXPECT_EQ(placeRecord("D152", place)[118], 0xFF);
    EXPECT_EQ(placeRecord("D152", place)[119], 0x7F);
    EXPECT_EQ(placeOf("D152", placeRecord("D152", place)).altitude, std::nullopt);
    EXPECT_EQ(placeOf("D108", placeRecord("D108", place)).altitude, std::nullopt);
    // A comment that ends in a zero byte before its field does.
    EXPECT_EQ(placeOf("D100", image(kIdent + kHere + "4x00 'AB' 00 37x20")).comment, "AB");
    // Texts of variable length that end with the record.
    const Bytes open = image("00 00 00 60" + kModern + kUnknown + "4x20 'PT1'");
    EXPECT_EQ(placeOf("D108", open).ident, "PT1");
    // A long ident is cut, so that a record always fits its packet.
    place.ident = std::string(300, 'x');
    place.comment = std::string(300, 'y');
    EXPECT_LE(placeRecord("D110", place).size(), 255U);
}

TEST(ProximityRecords, CarryTheirDistance) {
    const Proximity zone = {kCamp, 150};
    const std::string far = " 00 00 16 43";
    const std::string panel = kIdent + "2x20 04" + kHere + "12 04 56x20 10x20" + kComment;
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"D400", kCore + far},
        {"D403", kCore + "0B 02" + far},
        {"D450", "07 00 " + panel + far},
        {"D107", kCore + "0B 02" + far + " 00"},
        {"D108", "00 FF 02 60" + kModern + far + " 4x20" + kTexts},
        {"D152", kCore + far + " 30x20 24x20 2x20 12 04 2x20 00 04"},
    };
    for (const auto& [type, record] : cases) {
        EXPECT_EQ(proximityRecord(type, zone, 7), image(record)) << type;
        const Proximity read = proximityOf(type, image(record));
        EXPECT_EQ(read.distance, 150) << type;
        EXPECT_EQ(read.place.ident, kCamp.ident) << type;
    }
    EXPECT_EQ(proximityOf("D108", placeRecord("D108", kCamp)).distance, 0) << "unknown is none";
    EXPECT_EQ(proximityRecord("D103", zone, 0), image(kCore + "0B 02")) << "no room for it";
    EXPECT_THROW(proximityOf("D450", Bytes(1)), std::out_of_range);
}

TEST(RouteRecords, HaveTheirImages) {
    const Route route = {3, "TOUR DU L\xC3\x89MAN", {}, {}};
    EXPECT_EQ(routeHeaderRecord("D200", route), image("03"));
    EXPECT_EQ(routeHeaderRecord("D201", route), image("03 'TOUR DU L' C9 'MAN' 7x20"));
    EXPECT_EQ(routeHeaderRecord("D202", route), image("'TOUR DU L' C9 'MAN' 00"));
    EXPECT_EQ(routeOf("D200", image("03")).number, 3);
    EXPECT_EQ(routeOf("D201", image("03 'TOUR DU L' C9 'MAN' 00 6x20")), route);
    EXPECT_EQ(routeOf("D202", image("'TOUR DU L' C9 'MAN' 00 6x20")).name, route.name);
    EXPECT_THROW(routeOf("D201", image("03 'SHORT'")), std::out_of_range);

    EXPECT_EQ(linkRecord("A"), image("03 00 6x00 12xFF 'A' 00"));
    EXPECT_EQ(linkOf(image("FF 00 6x00 11xFF 00 'PT1      ' 00")), "PT1");
    EXPECT_THROW(linkOf(Bytes(19)), std::out_of_range);
}

// Noon on 1 January 1990 is 129600 seconds, 0001FA40, after the epoch.
const TrackPoint kPoint = {45, -90, 32874.5, 1042, true};

TEST(TrackRecords, HaveTheirImages) {
    const std::string here = kHere + "40 FA 01 00 ";
    // With what is left of the point: its altitude, and that a segment begins.
    const std::vector<std::tuple<std::string, std::string, bool, bool>> cases = {
        {"D300", here + "01", false, true},
        {"D301", here + "00 40 82 44" + kUnknown + "01", true, true},
        {"D302", here + "00 40 82 44" + kUnknown + kUnknown + "01", true, true},
        {"D303", here + "00 40 82 44 00", true, false},
        {"D304", here + "00 40 82 44" + kUnknown + "00 FF 00", true, false},
    };
    for (const auto& [type, text, altitude, segment] : cases) {
        const Bytes record = image(text);
        EXPECT_EQ(trackPointRecord(type, kPoint), record) << type;
        TrackPoint left = kPoint;
        left.altitude = altitude ? kPoint.altitude : std::nullopt;
        left.newSegment = segment;
        EXPECT_EQ(trackPointOf(type, record), left) << type;
        EXPECT_THROW(trackPointOf(type, std::span(record).first(record.size() - 1)),
                     std::out_of_range);
    }
    const Track track = {"Lac", {}};
    EXPECT_EQ(trackHeaderRecord("D310", track, 0), image("01 FF 'Lac' 00"));
    EXPECT_EQ(trackHeaderRecord("D312", track, 0), image("01 FF 'Lac' 00"));
    EXPECT_EQ(trackHeaderRecord("D311", track, 258), image("02 01"));
    EXPECT_EQ(trackNameOf("D310", image("FF 00 'Lac' 00 00")), "Lac");
    EXPECT_EQ(trackNameOf("D311", image("02 01 'Lac' 00 00")), "Track 259");
}

TEST(TrackRecords, MarkWhatIsUnknown) {
    const TrackPoint nowhere = {180, 180, 0, std::nullopt, false};
    const Bytes record = image("FF FF FF 7F FF FF FF 7F FF FF FF FF" + kUnknown + kUnknown + "00");
    EXPECT_EQ(trackPointRecord("D301", nowhere), record);
    EXPECT_EQ(trackPointOf("D301", record), nowhere);
    EXPECT_EQ(trackPointOf("D300", image(kHere + "4x00 FF")).time, 0);
    EXPECT_TRUE(trackPointOf("D300", image(kHere + "4x00 FF")).newSegment);
}

TEST(TrackRecords, PausesStandForSegmentsWhereThereIsNoFlag) {
    TrackPoint going = kPoint;
    going.newSegment = false;
    const Track track = {"Lac", {kPoint, going, kPoint, going}};
    EXPECT_EQ(trackPointRecords("D301", track).size(), 4U);
    const auto records = trackPointRecords("D303", track);
    ASSERT_EQ(records.size(), 6U);
    Track read = {"Lac", {}};
    for (const Bytes& record : records) {
        read.points.push_back(trackPointOf("D303", record));
    }
    EXPECT_FALSE(read.points[2].hasPosition());
    EXPECT_FALSE(read.points[3].hasPosition());
    joinSegments("D303", read);
    EXPECT_EQ(read, track);
}

TEST(RealTime, DateAndPositionHaveTheirImages) {
    // 14/07/2006 13:05:09
    EXPECT_EQ(dateRecord(38912 + (13 * 3600 + 5 * 60 + 9) / 86400.0),
              image("07 0E D6 07 0D 00 05 09"));
    EXPECT_EQ(dateRecord(32873 + 86399.6 / 86400), image("01 01 C6 07 00 00 00 00"));
    Motion motion;
    motion.latitude = 90;
    motion.longitude = -180;
    // Half of pi is 3FF921FB54442D18, pi 400921FB54442D18.
    EXPECT_EQ(positionRecord(motion), image("18 2D 44 54 FB 21 F9 3F 18 2D 44 54 FB 21 09 C0"));
}

TEST(RealTime, PvtHasItsImage) {
    Motion motion;
    motion.latitude = 90;
    motion.longitude = -180;
    motion.altitude = 1042;
    motion.east = 1.5;
    motion.north = -2;
    // Ten seconds into 1 January 1990, the Monday after the epoch: 86410 + 18 seconds of the
    // satellites' time, 40F519C000000000. 1042 + 48 metres are 44884000.
    EXPECT_EQ(pvtRecord(motion, 32874 + 10 / 86400.0),
              image("00 40 88 44 66 66 B6 40 9A 99 79 40 66 66 86 40 03 00 "
                    "00 00 00 00 C0 19 F5 40 "
                    "18 2D 44 54 FB 21 F9 3F 18 2D 44 54 FB 21 09 C0 "
                    "00 00 C0 3F 00 00 00 C0 4x00 00 00 40 C2 12 00 00 00 00 00"));
    // The week turns with the satellites' clock, 18 seconds before midnight.
    const Bytes late = pvtRecord(motion, 32880 - 18 / 86400.0);
    EXPECT_EQ(Bytes(late.begin() + 60, late.end()), image("07 00 00 00"));
}

}  // namespace
}  // namespace marlune::receivers::garmin
