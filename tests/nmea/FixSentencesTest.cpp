// A fix as sentences, against sentences written by hand.
#include <gtest/gtest.h>

#include "nmea/FixSentences.h"

namespace marlune {
namespace {

TEST(FixSentences, SayWhatTheFixKnows) {
    FixRecord fix;
    fix.latitude = 48.1173;
    fix.longitude = 11.0 + 31.0 / 60;
    fix.altitude = 545.4F;
    fix.time = 764426119;  // 23/03/1994 12:35:19
    fix.quality = 3;
    fix.eastSpeed = 11.4686F;
    fix.northSpeed = 1.1246F;
    EXPECT_EQ(ggaSentence(fix),
              "$GPGGA,123519.00,4807.03800,N,01131.00000,E,1,,,545.4,M,,M,,*53\r\n");
    EXPECT_EQ(rmcSentence(fix),
              "$GPRMC,123519.00,A,4807.03800,N,01131.00000,E,22.4,084.4,230394,,,A*62\r\n");
}

TEST(FixSentences, RoundingCarriesAndWhatIsUnknownIsEmpty) {
    FixRecord fix;
    fix.latitude = -9.999999999;
    fix.longitude = -0.00000001;
    fix.altitude = -0.04F;
    fix.quality = 0;
    EXPECT_EQ(ggaSentence(fix), "$GPGGA,,1000.00000,S,00000.00000,W,0,,,0.0,M,,M,,*7D\r\n");
    EXPECT_EQ(rmcSentence(fix), "$GPRMC,,V,1000.00000,S,00000.00000,W,,,,,,N*66\r\n");
    fix.quality = 5;
    fix.time = 946684799.996;  // rounds into the next year
    fix.eastSpeed = -0.0001F;
    fix.northSpeed = 1;
    EXPECT_EQ(rmcSentence(fix),
              "$GPRMC,000000.00,A,1000.00000,S,00000.00000,W,1.9,000.0,010100,,,D*5D\r\n");
}

}  // namespace
}  // namespace marlune
