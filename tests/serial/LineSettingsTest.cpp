#include <gtest/gtest.h>

#include "serial/LineSettings.h"

namespace marlune {
namespace {

TEST(LineSettings, ReadsTheTextsOfEveryFamily) {
    const auto garmin = parseLineSettings("baud=9600 parity=n data=8 stop=1");
    ASSERT_TRUE(garmin);
    EXPECT_EQ(garmin->baud, 9600U);
    EXPECT_EQ(garmin->parity, Parity::none);
    EXPECT_EQ(garmin->dataBits, 8);
    EXPECT_EQ(garmin->stopBits, 1);
    const auto mlr = parseLineSettings("  BAUD=38400  Parity=E data=7 stop=2 ");
    ASSERT_TRUE(mlr);
    EXPECT_EQ(mlr->baud, 38400U);
    EXPECT_EQ(mlr->parity, Parity::even);
    EXPECT_EQ(mlr->dataBits, 7);
    EXPECT_EQ(mlr->stopBits, 2);
}

TEST(LineSettings, LeavesOpenWhatIsNotNamed) {
    const auto nothing = parseLineSettings("");
    ASSERT_TRUE(nothing);
    EXPECT_FALSE(nothing->baud || nothing->parity || nothing->dataBits || nothing->stopBits);
}

TEST(LineSettings, RefusesWhatNoLineCanHave) {
    for (const char* text :
         {"baud=0", "baud=-9600", "baud=", "baud", "baud=99999999999", "baud=96 00", "baud=9600,",
          "parity=x", "parity=none", "data=4", "data=9", "stop=0", "stop=3", "colour=red"}) {
        EXPECT_FALSE(parseLineSettings(text)) << text;
    }
}

}  // namespace
}  // namespace marlune
