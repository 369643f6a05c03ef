#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/CodePage.h"
#include "garmin/records/PvtData.h"
#include "support/Image.h"
#include "support/TracedServices.h"

namespace marlune {
namespace {

// Ellipsoid 100.25 m, errors 1, 2, 3; fix 3; 43200.5 s; 0.785... and -0.5 radians; speeds 4, 5, 6;
// 48.5 m to sea level; 13 leap seconds; 366 days.
const std::string kFront = "0080C842 0000803F 00000040 00004040 ";
const std::string kFix = "0300 ";
const std::string kTime = "000000001018E540 ";
const std::string kRest =
    "152D4454FB21E93F 000000000000E0BF 00008040 0000A040 0000C040 00004242 0D00 ";
const std::string kDays = "6E010000";

class PvtDataTest : public testing::Test {
protected:
    bool get(const std::string& record, int first = -1, char separator = '.') {
        return pvt_.GetAttributes(image(record), first, trace_, separator);
    }

    GpsControlEvents events_;
    TracedServices services_{events_};
    FakeHost& host_ = services_.host;
    DebugTrace& trace_ = services_.trace;
    PvtData pvt_;
};

TEST_F(PvtDataTest, TurnsAFixIntoATrackPoint) {
    EXPECT_TRUE(get(kFront + kFix + kTime + kRest + kDays));
    EXPECT_EQ(pvt_.latitude, 44.99999999412416) << "the factor is a little small";
    EXPECT_EQ(pvt_.altitude, 148.75F);
    EXPECT_THAT((std::vector<float>{pvt_.epe, pvt_.eph, pvt_.epv, pvt_.east, pvt_.north, pvt_.up}),
                testing::ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(pvt_.fixNames.at(static_cast<std::size_t>(pvt_.fix)), " 3d ");
    // 43200 s (half to even) of day 366 after 31/12/1989, less 13 s.
    EXPECT_EQ(pvt_.getIdent('.'), "T;45;-28.64789;33239.49984953704;149;-1");
    EXPECT_EQ(pvt_.point->latitude, pvt_.latitude) << "the point is not rounded";
}

TEST_F(PvtDataTest, LosesFractionsToADecimalComma) {
    EXPECT_TRUE(get(kFront + kFix + kTime + kRest + kDays, 0, ','));
    EXPECT_EQ(pvt_.getIdent(','), "T;44;-28;33239;148;0");
}

TEST_F(PvtDataTest, WithoutFixChangesNothingButTheFix) {
    EXPECT_EQ(pvt_.getIdent('.'), "") << "no point yet";
    EXPECT_TRUE(get(kFront + kFix + kTime + kRest + kDays));
    const std::string line = pvt_.getIdent('.');
    EXPECT_FALSE(get("16x00 0000"));
    EXPECT_EQ(pvt_.fix, 0);
    EXPECT_EQ(pvt_.altitude, 148.75F);
    EXPECT_EQ(pvt_.getIdent('.'), line);
    EXPECT_EQ(host_.traceText(), "");
}

TEST_F(PvtDataTest, ErrorsAreTracedAndKeepThePoint) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"16x00", "9 L'indice n'appartient pas à la sélection"},
        {kFront + kFix + kTime + kRest + "6E0100", "9 L'indice n'appartient pas à la sélection"},
        {kFront + kFix + "8x7F " + kRest + kDays, "6 Dépassement de capacité"},
        {kFront + kFix + "8xFF " + kRest + kDays, "6 Dépassement de capacité"},
        {kFront + kFix + kTime + kRest + "FFFFFF7F", "6 Dépassement de capacité"},
        {"8xFF 8x00 " + kFix + kTime + kRest + kDays, "6 Dépassement de capacité"},
        {kFront + kFix + kTime + "16xFF 18x00" + kDays, "6 Dépassement de capacité"},
    };
    for (const auto& [record, text] : cases) {
        trace_.openEmpty();
        EXPECT_FALSE(get(record)) << record;
        EXPECT_THAT(fromAnsi(host_.traceText()),
                    testing::EndsWith(":Erreur PvtData: " + text + "\r\n"));
        EXPECT_FALSE(pvt_.point.has_value());
    }
}

}  // namespace
}  // namespace marlune
