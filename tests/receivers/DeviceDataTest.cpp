#include <gmock/gmock.h>

#include <stdexcept>

#include "receivers/DeviceData.h"

namespace marlune::receivers {
namespace {

using testing::ElementsAre;

TEST(DeviceData, ReadsWhatItPrints) {
    const std::vector<std::string> lines = {
        "W;ÉVIAN;46.401111;-6.5;Évian;375;0;2",
        "W;NOALT;-45;0.000001;;;8196;0",
        "P;CREVAS;45.848611;6.872222;Crevasses;3400;14;0;150",
        "N;Lac Blanc; et retour",
        "T;45.9586;6.8869;38912.277778;1890;-1",
        "T;180;180;0;;0",
        "R;7;GOUTER",
        "W;A;1;2;;;18;0",
        "L;RteLink A",
        "W;B;3;4;;;18;0",
    };
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\r\n";
    }
    const DeviceData data = readData(text);
    EXPECT_EQ(linesOf(data), lines);
    EXPECT_EQ(data.places[1].altitude, std::nullopt);
    EXPECT_FALSE(data.tracks[0].points[1].hasPosition());
    EXPECT_EQ(data.proximities[0].distance, 150);
}

TEST(DeviceData, TakesCommasWindows1252AndHeaders) {
    const DeviceData data = readData(
        "---- W;id;lat;lon;comment ------\nW;\xC9VIAN;46,5;-6,25;a,b\n\n-------- Routes --------\n"
        "R;1;X\nW;IN;1;2\n--- T;lat;lon ---\nW;OUT;3;4\nT;1;2");
    EXPECT_THAT(linesOf(data), ElementsAre("W;ÉVIAN;46.5;-6.25;a,b;;18;0", "W;OUT;3;4;;;18;0", "N;",
                                           "T;1;2;0;;0", "R;1;X", "W;IN;1;2;;;18;0"));
    EXPECT_EQ(linesOf(readData("\xEF\xBB\xBFW;É;1;2")), linesOf(readData("W;É;1;2")));
    EXPECT_THAT(linesOf(readData("N;a\rNé\r\r\n")), ElementsAre("N;a", "N;é"));
}

TEST(DeviceData, NamesTheLineAndItsFault) {
    for (const auto& [text, fault] : {std::pair{"\nW;A;x;2", "line 2: \"x\" is no number"},
                                      {"W;A;1", "line 1: has too few fields"},
                                      {"W;A;91;2", "line 1: \"91\" is out of range"},
                                      {"W;A;1;2;;nan", "line 1: \"nan\" is no number"},
                                      {"W;A;1;2;;0;65536", "line 1: \"65536\" is out of range"},
                                      {"R;256;X", "line 1: \"256\" is out of range"},
                                      {"L;RteLink A", "line 1: stands in no route"},
                                      {"P;A;1;2;;0;0;0;-1", "line 1: \"-1\" is out of range"}}) {
        try {
            readData(text);
            ADD_FAILURE() << text << " was accepted";
        } catch (const std::invalid_argument& error) {
            EXPECT_STREQ(error.what(), fault);
        }
    }
    EXPECT_THROW(readDataFile("/nowhere/at/all"), std::invalid_argument);
    EXPECT_THROW(readDataFile("/"), std::invalid_argument);
}

TEST(NumberText, IsShortAndPlain) {
    EXPECT_EQ(numberText(45.50000049, 6), "45.5");
    EXPECT_EQ(numberText(-0.0000001, 6), "0");
    EXPECT_EQ(numberText(100, 0), "100");
    EXPECT_EQ(numberText(2.5, 0), "2") << "half to even";
    EXPECT_EQ(numberText(1e-7), "0.0000001");
    EXPECT_EQ(numberText(32874.5), "32874.5");
}

}  // namespace
}  // namespace marlune::receivers
