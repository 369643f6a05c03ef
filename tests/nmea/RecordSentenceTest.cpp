// The sentences of waypoints, track points, fixes and routes, against texts written by hand.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/RunTimeError.h"
#include "nmea/NmeaPacket.h"
#include "nmea/RouteSentence.h"
#include "nmea/magellan/FixSentence.h"
#include "nmea/magellan/TrackSentence.h"
#include "nmea/magellan/WaypointSentence.h"
#include "nmea/mlr/MlrRecords.h"

namespace marlune {
namespace {

using testing::ElementsAre;

constexpr double kToday = 39234;  // 01/06/2007
constexpr const char* kHome = "$PMGNWPL,4807.038,N,01131.000,E,0000152,M,HOME,MY HOUSE,a*";

std::string checksum(std::string_view text) {
    NmeaPacket packet;
    packet.SetAttributes(text);
    return packet.Signer();
}

// A sentence up to its "*", as it goes out.
std::string closed(const std::string& text) {
    return text + checksum(text) + "\r\n";
}

TEST(MagellanWaypoint, IsReadInSinglePrecision) {
    Waypoint waypoint;
    EXPECT_EQ(GetAttributes_MGN(waypoint, std::string(kHome) + "00"), checksum(kHome))
        << "the checksum is computed, not compared";
    EXPECT_EQ(waypoint.getIdent('.'), "W;HOME;48.117298;11.516666;MY HOUSE;152;18;0");
    EXPECT_EQ(waypoint.latitude, static_cast<double>(static_cast<float>(48 + 7.038 / 60)));
}

TEST(MagellanWaypoint, ReadsOddFieldsByTheirRules) {
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"$PMGNWPL,4807.038,S,01131.000,W,152,F, A B , c ,a*",
         "W;A B;-48.117298;-11.516666;c;51;18;0"},
        {"$PMGNWPL,4807.038,n,01131.000,,-3.5,M,caf\xE9,\xC9t\xE9*",
         "W;café;-48.117298;-11.516666;Été;-4;18;0"},
        {"$PMGNWPL,,,,,,,,*", "W;;0;0;;0;18;0"},
        {"$PMGNWPL*", "W;;0;0;;0;18;0"},
        {"$PMGNWPL,48x7.5,N,1,E,1,M,X*", "W;X;48;1;;1;18;0"},
    };
    for (const auto& [sentence, line] : cases) {
        Waypoint waypoint;
        EXPECT_EQ(GetAttributes_MGN(waypoint, sentence), checksum(sentence));
        EXPECT_EQ(waypoint.getIdent('.'), line) << sentence;
    }
}

TEST(MagellanWaypoint, StopsAtANumberThatDoesNotFit) {
    Waypoint waypoint;
    EXPECT_EQ(GetAttributes_MGN(waypoint, "$PMGNWPL,4830.0,N,00130.0,E,1e39,M,X,,a*00"), "");
    EXPECT_EQ(waypoint.latitude, 48.5);
    EXPECT_EQ(waypoint.ident, "");
}

TEST(MagellanWaypoint, IsWritten) {
    Waypoint waypoint;
    waypoint.SetPosition(48.1173, 11.516667);
    waypoint.altitude = 152.9F;
    waypoint.ident = "HOME";
    waypoint.comment = "MY HOUSE";
    EXPECT_EQ(Coder_MGN(waypoint),
              closed("$PMGNWPL,4807.038,N,01131.000,E,152,M,HOME,MY HOUSE,a*"));
    waypoint.altitude = -0.9F;
    waypoint.ident = "café";
    waypoint.comment = "a,b";
    EXPECT_EQ(Coder_MGN(waypoint), closed("$PMGNWPL,4807.038,N,01131.000,E,0,M,caf\xE9,a,b,a*"));
}

TEST(MlrWaypoint, KeepsSixCharactersOfName) {
    Waypoint waypoint;
    waypoint.altitude = 7;
    EXPECT_EQ(GetAttributes_MLR(waypoint, "$GPWPL,4807.038,N,01131.000,E,AB     MY, HOUSE*5x9"),
              "5x");
    EXPECT_EQ(waypoint.ident, "AB    ");
    EXPECT_EQ(waypoint.comment, "MY");
    EXPECT_EQ(waypoint.symbol, 18);
    EXPECT_EQ(waypoint.altitude, 7) << "the sentence has none";
    EXPECT_EQ(GetAttributes_MLR(waypoint, "$GPWPL,4807.038,N,01131.000,E,\xC9*5A"), "5A");
    EXPECT_EQ(waypoint.ident, "É");
    EXPECT_EQ(waypoint.comment, "");
    EXPECT_EQ(GetAttributes_MLR(waypoint, "$GPWPL,4807.038,N,01131.000,E,X"), "");
    EXPECT_EQ(GetAttributes_MLR(waypoint, "$GPWPL,4807.038,N,0113"), std::nullopt);
    EXPECT_EQ(GetAttributes_MLR(waypoint, "$GPWPL,001e99,N,01131.000,E,X*5A"), std::nullopt);
}

TEST(MlrWaypoint, IsWritten) {
    Waypoint waypoint;
    waypoint.SetPosition(-33.5, 151.25);
    waypoint.comment = "note";
    for (const auto& [name, written] : std::vector<std::pair<std::string, std::string>>{
             {"ABCDEFGH", "ABCDEF note"},
             {"AB", "AB     note"},
             {"ÉÉÉÉÉÉÉ", "\xC9\xC9\xC9\xC9\xC9\xC9 note"}}) {
        waypoint.ident = name;
        EXPECT_EQ(Coder_MLR(waypoint), closed("$GPWPL,3330.000,S,15115.000,E," + written + "*"));
    }
}

TEST(MagellanTrackPoint, ReadsPositionTimeNameAndDate) {
    const std::string start = "$PMGNTRK,4830.000,N,00130.000,W,00152,M,";
    const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
        {"120000.00,A,LOOP,150325*", "T;48.5;-1.5;45731.5;152;0", "LOOP"},
        {"120000.00,A,,150325*", "T;48.5;-1.5;45731.5;152;0", "before"},
        {"180000.00,A,X*", "T;48.5;-1.5;39234.75;152;0", "X"},
        {"011500.00,A,X*", "T;48.5;-1.5;39234.05208333333;152;0", "X"},
        {"060000.00*", "T;48.5;-1.5;39234.25;152;0", "before"},
        {"*", "T;48.5;-1.5;39234;152;0", "before"},
        // Without its fraction the last five characters are 20000 seconds.
        {"120000*", "T;48.5;-1.5;39234.73148148148;152;0", "before"},
    };
    for (const auto& [end, line, name] : cases) {
        Trace point;
        point.SetName("before");
        EXPECT_EQ(GetAttributes_MGN(point, start + end, kToday), checksum(start + end));
        EXPECT_EQ(point.getIdent('.'), line) << end;
        EXPECT_EQ(point.GetName(), name);
    }
}

TEST(MagellanTrackPoint, WithoutASenseIsNotRead) {
    const std::string start = "$PMGNTRK,4830.000,N,00130.000,W,00152,M";
    for (const char* end :
         {"*00", ",120000.00,A,X,320125*00", ",120000.00,A,X,290225*00", ",120000.00,A,X,1503*00",
          ",120000.00,A,X,1a0325*00", ",12001e99,A,X*00"}) {
        Trace point;
        EXPECT_EQ(GetAttributes_MGN(point, start + end, kToday), "") << end;
        EXPECT_EQ(point.pTime, 0);
    }
}

TEST(MagellanTrackPoint, IsWritten) {
    Trace point;
    point.latitude = 48.5;
    point.longitude = -1.5;
    point.pTime = 39234.75;
    point.SetName("Été");
    for (const auto& [altitude, text] :
         {std::pair{152.6F, "00153"}, {-3, "-00003"}, {123456, "123456"}, {-0.2F, "00000"}}) {
        point.altitude = altitude;
        EXPECT_EQ(CoderMgn(point), closed(std::string("$PMGNTRK,4830.000,N,00130.000,W,") + text +
                                          ",M,180000.00,A,\xC9T\xC9*"));
    }
}

TEST(MlrTrackPoint, IsDatedByItsNumber) {
    const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
        {"TRC012", "39234.0012;0;0", "TRC012"},
        {"TR0123 Coupure", "39234.0123;0;-1", "TR0123"},
        {"TRxxxx D", "39234;0;0", "TRxxxx"},
        {"T", "39234;0;0", "T"},
    };
    for (const auto& [texts, end, name] : cases) {
        Trace point;
        const std::string sentence = "$GPWPL,4807.038,N,01131.000,E," + texts + "*77";
        EXPECT_EQ(GetAttributes_MLR(point, sentence, kToday), "77");
        EXPECT_EQ(point.getIdent('.'), "T;48.117298;11.516666;" + end);
        EXPECT_EQ(point.GetName(), name);
    }
}

TEST(MlrTrackRecord, IsBigEndian) {
    using namespace std::string_literals;
    Trace point;
    // Number 258; 48.5 degrees are 2910000 thousandths of a minute, -1.5 are -90000; -2 m.
    const std::string position = "\x01\x02\x00\x2C\x67\x30\xFF\xFE\xA0\x70\xFF\xFE"s;
    EXPECT_EQ(GetAttributes_MLR_SP(point, position + "\0\0\0\0"s, kToday), 258);
    EXPECT_EQ(point.getIdent('.'), "T;48.5;-1.5;39234.0258;-2;0");
    GetAttributes_MLR_SP(point, position + "\x00\x01\x51\x80 more"s, kToday);
    EXPECT_EQ(point.pTime, 29227) << "a day after the GPS epoch";
    EXPECT_THROW(GetAttributes_MLR_SP(point, position + "\0\0\0"s, kToday), RunTimeError);
}

TEST(Fix, GivesAPointOnlyWithAPosition) {
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"$GPGGA,120000.00,4830.000,N,00130.000,W,1,08,0.9,152,F,46.9,M,,*00",
         "T;48.5;-1.5;39234.5;51;-1"},
        // Receivers give seconds without a fraction, or with any number of decimals.
        {"$GPGGA,120012,4830.000,N,00130.000,W,1,08,0.9,152,M*00",
         "T;48.5;-1.5;39234.50013888889;152;-1"},
        {"$GPGGA,120012.000,4830.000,N,00130.000,W,1,08,0.9,152,M*00",
         "T;48.5;-1.5;39234.50013888889;152;-1"},
        {"$GPGGA,120000.00,4830.000,N,00130.000,W,0,08,0.9,152,M*00", ""},
        {"$GPGGA,120000.00,,,,,1,08,0.9,152,M*00", ""},
        {"$GPGGA,120000.00,4830.000,N,00130.000,W,1,08,0.9,1e99,M*00", ""},
        {"$GPGGA*00", ""},
    };
    for (const auto& [sentence, line] : cases) {
        PvtData fix;
        GetAttributes_MGN(fix, sentence, kToday, true);
        EXPECT_EQ(fix.getIdent('.'), line) << sentence;
    }
    PvtData fix;
    GetAttributes_MGN(fix, "$GPGGA,120000.00,4830.000,N,00130.000,W,1,08,0.9,152,M*00", kToday,
                      false);
    EXPECT_EQ(fix.getIdent(','), "T;48,5;-1,5;39234,5;152;0") << "nothing is lost to a comma";
}

Route routeOf(const std::vector<std::string>& names) {
    Route route;
    route.numRte = 3;
    route.setDescription("Tour d'été");
    for (const std::string& name : names) {
        Waypoint point;
        point.ident = name;
        route.AddWaypt(point);
    }
    return route;
}

TEST(RouteSentences, CarryTwoOrFourPoints) {
    const Route route = routeOf({"HOME", "LONGNAME1", "C", "D", "E"});
    EXPECT_THAT(PhraseRouteMGN(route),
                ElementsAre(closed("$PMGNRTE,3,1,c,3,Tour d'\xE9t\xE9,HOME,a,LONGNAME1,a*"),
                            closed("$PMGNRTE,3,2,c,3,Tour d'\xE9t\xE9,C,a,D,a*"),
                            closed("$PMGNRTE,3,3,c,3,Tour d'\xE9t\xE9,E,a*")));
    EXPECT_THAT(PhraseRouteMLR(route), ElementsAre(closed("$GPRTE,2,1,c,3,HOME,LONGNA,C,D*"),
                                                   closed("$GPRTE,2,2,c,3,E*")));
    EXPECT_TRUE(PhraseRouteMGN(routeOf({})).empty());
}

TEST(RouteSentences, AreRead) {
    const RoutePhrase magellan =
        RouteMGN("$PMGNRTE,2,1,c,3, Tour d'\xE9t\xE9,HOME,a, B ,x,,a,C*00");
    EXPECT_THAT((std::vector<int>{magellan.total, magellan.index, magellan.number}),
                ElementsAre(2, 1, 3));
    EXPECT_EQ(magellan.name, "Tour d'été");
    EXPECT_THAT(magellan.points, ElementsAre("HOME", "B", "C"));
    const RoutePhrase mlr = RouteMLR("$GPRTE,2,2,c,255,HOME,,B*00");
    EXPECT_EQ(mlr.number, 255);
    EXPECT_EQ(mlr.name, "");
    EXPECT_THAT(mlr.points, ElementsAre("HOME", "B"));
    for (const char* bad :
         {"$GPRTE,2,1,c,256,A*00", "$GPRTE,99999,1,c,1,A*00", "$GPRTE,1,1,c,-1,A*00"}) {
        EXPECT_THROW((void)RouteMLR(bad), RunTimeError) << bad;
    }
}

}  // namespace
}  // namespace marlune
