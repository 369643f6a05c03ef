#include <gmock/gmock.h>

#include <cmath>
#include <fstream>
#include <numbers>

#include "receivers/Walk.h"
#include "receivers/nmea/NmeaReceiver.h"
#include "receivers/nmea/SentenceText.h"
#include "receivers/sentences/Talk.h"
#include "support/TempFolder.h"

namespace marlune::receivers::nmea {
namespace {

using testing::ElementsAre;

NmeaReceiver::Settings settings(std::string_view data) {
    NmeaReceiver::Settings settings;
    settings.data = readData(data);
    settings.date = 39083.5;  // 01/01/2007 12:00:00
    return settings;
}

TEST(NmeaReceiver, StreamsFixesAndItsListFromTheBeginning) {
    Talk unit(std::make_unique<NmeaReceiver>(settings(kHoldings)));
    const std::vector<std::string> first = unit.answers();
    EXPECT_THAT(
        first,
        ElementsAre(intact("GPGGA,120000.00,4807.1028,N,01131.0000,E,1,08,1.1,152.0,M,48.0,M,,"),
                    intact("GPRMC,120000.00,A,4807.1028,N,01131.0000,E,2.5,90.0,010107,,,A"),
                    intact("GPGSA,A,3,02,05,09,12,17,21,25,29,,,,,1.9,1.1,1.5"),
                    intact("GPGLL,4807.1028,N,01131.0000,E,120000.00,A,A"),
                    intact("GPWPL,4807.038,N,01131.000,E,HOME")));
    const std::vector<std::string> more = unit.wait(4);
    ASSERT_EQ(more.size(), 20U);
    EXPECT_EQ(more[14], intact("GPRTE,1,1,c,3,HOME,ÉVIAN,MILL"));
    EXPECT_EQ(more[19], first[4]);
    EXPECT_THAT(more[15], testing::StartsWith("$GPGGA,120004.00,"));
}

TEST(NmeaReceiver, KeepsItsRateAndDropsWhatItMissed) {
    NmeaReceiver::Settings fast = settings("");
    fast.rate = 20;
    Talk unit(std::make_unique<NmeaReceiver>(fast));
    EXPECT_EQ(unit.wait(0.99).size(), 4 * 20U);
    unit.receiver().elapse(1500);
    unit.receiver().elapse(1500.01);
    EXPECT_EQ(unit.receiver().takeOutput().empty(), false);
    EXPECT_NEAR(*unit.receiver().nextDeadline(), 1500.05, 1e-6);
}

TEST(NmeaReceiver, SaysOnlyTheTimeWithoutAFix) {
    NmeaReceiver::Settings searching = settings("");
    searching.hasFix = false;
    Talk unit(std::make_unique<NmeaReceiver>(searching));
    EXPECT_THAT(unit.answers(), ElementsAre(intact("GPGGA,120000.00,,,,,0,00,99.9,,M,,M,,"),
                                            intact("GPRMC,120000.00,V,,,,,,,010107,,,N"),
                                            intact("GPGSA,A,1,,,,,,,,,,,,,99.9,99.9,99.9"),
                                            intact("GPGLL,,,,,120000.00,V,N")));
}

TEST(NmeaReceiver, PlaysAFileOverAndOver) {
    const TempFolder folder;
    ReceiverOptions options;
    options.dataFile = (folder.path() / "log").string();
    std::ofstream(options.dataFile) << "# a log\n$GPGGA,1*00\r\nW;HOME;1;2\n$GPRMC,2";
    options.rate = 10;
    Talk unit(makeNmeaReceiver(options));
    EXPECT_THAT(unit.wait(0.25), ElementsAre("$GPGGA,1*00", intact("GPRMC,2"), "$GPGGA,1*00"));
    options.unit = "nobody";
    EXPECT_THROW(makeNmeaReceiver(options), std::invalid_argument);
    options.unit = "search";
    options.dataFile = "";
    Talk searching(makeNmeaReceiver(options));
    EXPECT_THAT(searching.answers().at(1), testing::HasSubstr(",V,"));
}

TEST(SentenceText, CarriesMinutesAndKeepsHemispheres) {
    EXPECT_EQ(coordinates(47.99999999, -9.99999999, 3), "4800.000,N,01000.000,W");
    EXPECT_EQ(coordinates(0, 0, 3), "0000.000,N,00000.000,E");
    EXPECT_EQ(coordinates(120, 180, 4), "9000.0000,N,18000.0000,E");
    EXPECT_EQ(coordinates(-33.5, 151.25, 3), "3330.000,S,15115.000,E");
}

TEST(SentenceText, CarriesHundredthsIntoTheNextDay) {
    const double date = 45731 + 86399.996 / 86400;
    EXPECT_EQ(timeText(date) + " " + dayText(date), "000000.00 160325");
    EXPECT_EQ(timeText(1e9) + " " + dayText(1e9), "000000.00 311299");
}

// A walk is a circle that moves as it says, and never far, also where meridians meet.
TEST(Fix, WalksRoundThePlace) {
    for (const auto& [latitude, longitude] :
         {std::pair{46.0, 6.0}, {-17.0, 179.9999}, {89.99, 0.0}, {-90.0, 0.0}}) {
        const Place centre = {"A", latitude, longitude, "", 1000, 18, 0};
        Motion before = walk(centre, 0);
        for (int seconds = 1; seconds < 2000; ++seconds) {
            const Motion now = walk(centre, seconds);
            EXPECT_NEAR((now.latitude - before.latitude) * 60 * 1852,
                        (before.north + now.north) / 2, 0.02);
            EXPECT_LT(std::abs(now.latitude - latitude), 0.0011);
            EXPECT_LE(std::abs(now.longitude), 180);
            before = now;
            const Fix fix = walkRound(centre, seconds, 0);
            EXPECT_NEAR(fix.speed * std::sin(fix.course * std::numbers::pi / 180), now.east, 1e-9);
            EXPECT_GE(fix.course, 0);
            EXPECT_LT(fix.course, 360);
        }
    }
}

}  // namespace
}  // namespace marlune::receivers::nmea
