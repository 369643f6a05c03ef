#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/DateText.h"
#include "garmin/values/ErrorOf.h"
#include "garmin/values/jour.h"

namespace marlune {
namespace {

TEST(jour, CountsFromTheEpochs) {
    EXPECT_EQ(formatDate(jour::GarminTimeToDate(0)), "31/12/1989 00:00:00");
    EXPECT_EQ(formatDate(jour::GarminTimeToDate(86400)), "01/01/1990 00:00:00");
    EXPECT_EQ(formatDate(jour::GarminTimeToDate(-1)), "30/12/1989 23:59:59");
    EXPECT_EQ(formatDate(jour::GpsTimeToDate(0)), "06/01/1980 00:00:00");
    EXPECT_EQ(jour::GarminTimeToDate(129600), 32874.5);
}

TEST(jour, RoundsToSecondsAndGivesZeroBeyondThem) {
    EXPECT_EQ(jour::DateToGarminTime(jour::kGarminEpoch), 0);
    EXPECT_EQ(jour::DateToGarminTime(jour::kGarminEpoch + 0.5 / 86400), 0);
    EXPECT_EQ(jour::DateToGarminTime(jour::kGarminEpoch + 1.5 / 86400), 2);
    EXPECT_EQ(jour::DateToGarminTime(jour::kGarminEpoch + 3.5 / 86400), 3)
        << "half seconds are not exact in a day count";
    EXPECT_EQ(jour::DateToGarminTime(0), 0) << "no date: too long ago for 32 bits";
    EXPECT_EQ(jour::DateToGarminTime(1e300), 0);
    EXPECT_EQ(jour::DateToGarminTime(32874.5), 129600);
}

TEST(jour, ReadsDateTexts) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"Mon Jan 15 12:34:56 2007", "15/01/2007 12:34:56"},
        {"  WED DEC 3 00:00:00 1997 ", "03/12/1997 00:00:00"},
        {"x feb 29 23:59:59 2004", "29/02/2004 23:59:59"},
        {"x may 1 1:2:3 07", "01/05/2007 01:02:03"},
        {"x dec 30 06:00:00 1899", "01/01/2000 06:00:00"},
    };
    for (const auto& [text, date] : cases) {
        EXPECT_EQ(formatDate(jour::ParseDateText(text)), date) << text;
    }
}

TEST(jour, RejectsWhatIsNoDate) {
    const std::vector<std::pair<std::string, int>> cases = {
        {"Mon Jan 15 12:34:56", RunTimeError::index},
        {"", RunTimeError::index},
        {"Mon Jan 15 12:34 2007", RunTimeError::index},
        {"Mon Mai 15 12:34:56 2007", RunTimeError::typeMismatch},
        {"Mon Feb 30 12:34:56 2007", RunTimeError::typeMismatch},
        {"Mon Jan 15 24:00:00 2007", RunTimeError::typeMismatch},
        {"Mon Jan -5 12:34:56 2007", RunTimeError::typeMismatch},
        {"Mon Jan 15 12:34:56 20070", RunTimeError::typeMismatch},
        {"Mon Jan  12:34:56 2007", RunTimeError::typeMismatch},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(errorOf([&] { (void)jour::ParseDateText(each.first); }), each.second)
            << each.first;
    }
}

TEST(jour, ReadsTheDateRecord) {
    const std::vector<std::uint8_t> record = {1, 15, 0xD7, 0x07, 12, 0, 34, 56};
    EXPECT_EQ(formatDate(jour::GarminDateToDate(record)), "15/01/2007 12:34:56");
    const std::vector<std::vector<std::uint8_t>> bad = {
        {},
        {1, 15, 0xD7, 7, 12, 0, 34},
        {13, 15, 0xD7, 7, 12, 0, 34, 56},
        {1, 0, 0xD7, 7, 12, 0, 34, 56},
        {1, 15, 0xFF, 0xFF, 12, 0, 34, 56},
        {1, 15, 0xD7, 7, 12, 1, 34, 56},
        {1, 15, 0xD7, 7, 12, 0, 60, 56},
    };
    for (const auto& bytes : bad) {
        EXPECT_THROW((void)jour::GarminDateToDate(bytes), RunTimeError);
    }
}

}  // namespace
}  // namespace marlune
