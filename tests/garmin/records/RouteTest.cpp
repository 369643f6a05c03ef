#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "garmin/records/Route.h"
#include "garmin/records/RteLink.h"
#include "garmin/values/ErrorOf.h"
#include "support/Image.h"

namespace marlune {
namespace {

TEST(Route, ReadsItsHeaders) {
    const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
        {"D200", "03", "R;3;ROUTE 3"},
        {"D201", "02 ' ABC' 00 'rest of the bytes'", "R;2;ABC"},
        {"D201", "02 20x41 'more'", "R;2;" + std::string(20, 'A')},
        {"D201", "02 'ABC' 00", "R;2;ABC"},
        {"D202", "'MY ROUTE ' 00 'x'", "R;9;MY ROUTE"},
        {"D202", "30x41", "R;9;" + std::string(30, 'A')},
        {"D202", "", "R;9;"},
    };
    for (const auto& [type, record, line] : cases) {
        Route route;
        route.numRte = 9;
        route.GetAttributes(type, image(record));
        EXPECT_EQ(route.getIdent(), line);
    }
    Route route;
    EXPECT_EQ(errorOf([&] { route.GetAttributes("D200", {}); }), RunTimeError::index);
    EXPECT_EQ(errorOf([&] { route.GetAttributes("D201", image("02 'ABC'")); }),
              RunTimeError::index);
}

TEST(Route, WritesTwentyOneBytes) {
    const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXY";
    const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
        {"D201", "ABC", "02 'ABC' 00 16x20"},    {"D201", letters, "02 'ABCDEFGHIJKLMNOPQRS' 00"},
        {"D202", " ÉTÉ ", "C9 'T' C9 00 17x20"}, {"D202", letters, "'ABCDEFGHIJKLMNOPQRST' 00"},
        {"D200", "ABC", "'ABC' 00 17x20"},
    };
    for (const auto& [type, description, sent] : cases) {
        Route route;
        route.SetAttributes("R;2;" + description);
        EXPECT_EQ(route.Coder(type), image(sent)) << type << ' ' << description;
    }
}

TEST(Route, ReadsItsLine) {
    Route route;
    route.SetAttributes("R; 255 ; To the sea ;x");
    EXPECT_EQ(route.getIdent(), "R;255;To the sea");
    for (const std::string number : {"", "x", "1x", "256", "-1", "1e9"}) {
        EXPECT_EQ(errorOf([&] { route.SetAttributes("R;" + number + ";A"); }),
                  RunTimeError::typeMismatch)
            << number;
    }
    EXPECT_EQ(errorOf([&] { route.SetAttributes("R;1"); }), RunTimeError::index);
}

TEST(RteLink, IsReceivedAndSent) {
    RteLink link;
    link.GetAttributes("D210", image("0300 6x01 12x02 'A-B' 00 'x'"));
    EXPECT_EQ(link.getIdent(), "L;RteLink A-B");
    EXPECT_EQ(link.linkClass, 3);
    EXPECT_THAT(link.subclass, testing::ElementsAreArray(image("6x01 12x02")));
    EXPECT_EQ(link.Coder("D210"), image("FF00 6x00 11xFF 00 'A-B      ' 00"));
    link.SetIdent("ABCDEFGHIJ");
    EXPECT_EQ(link.Coder("D210"), image("FF00 6x00 11xFF 00 'ABCDEFGHI' 00"));
    link.GetAttributes("D210", image("20x00"));
    EXPECT_EQ(link.getNom(), "");
    EXPECT_EQ(errorOf([&] { link.GetAttributes("D210", image("19x00")); }), RunTimeError::index);
}

}  // namespace
}  // namespace marlune
