#include <gtest/gtest.h>

#include <tuple>

#include "serial/LineSettings.h"

namespace marlune {
namespace {

TEST(LineSettings, ReadsWhatIsNamedAndLeavesTheRestOpen) {
    const std::pair<const char*, LineSettings> cases[] = {
        {"baud=9600 parity=n data=8 stop=1", {9600, Parity::none, 8, 1}},
        {"  BAUD=38400  Parity=E data=7 stop=2 ", {38400, Parity::even, 7, 2}},
        {"", {}},
    };
    for (const auto& [text, settings] : cases) {
        const auto read = parseLineSettings(text);
        ASSERT_TRUE(read) << text;
        EXPECT_EQ(std::tie(read->baud, read->parity, read->dataBits, read->stopBits),
                  std::tie(settings.baud, settings.parity, settings.dataBits, settings.stopBits))
            << text;
    }
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
