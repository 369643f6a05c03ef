#include <gmock/gmock.h>

#include "receivers/Pacer.h"

namespace marlune::receivers {
namespace {

Said piece(std::size_t size, int baud) {
    return {std::vector<std::uint8_t>(size, 'x'), baud};
}

std::size_t sizeOf(const std::vector<Said>& said) {
    std::size_t size = 0;
    for (const Said& each : said) {
        size += each.bytes.size();
    }
    return size;
}

TEST(Pacer, UnpacedEverythingIsOutAtOnceAtTheSpeedOfEachPiece) {
    Pacer pacer(false);
    EXPECT_EQ(pacer.due(), std::nullopt);
    pacer.add({piece(3, 9600), piece(2, 38400)}, 10);
    EXPECT_LE(*pacer.due(), 10);
    const std::vector<Said> out = pacer.take(10);
    ASSERT_EQ(out.size(), 2U);
    EXPECT_EQ(sizeOf(out), 5U);
    EXPECT_EQ(out[0].baud, 9600);
    EXPECT_EQ(out[1].baud, 38400);
    EXPECT_EQ(pacer.backlog(), 0U);
}

TEST(Pacer, ABytesTimeIsTenBits) {
    Pacer pacer(true);
    pacer.add({piece(100, 1000)}, 5);
    EXPECT_TRUE(pacer.take(5.009).empty()) << "a byte arrives when its last bit has";
    EXPECT_EQ(sizeOf(pacer.take(5.01)), 1U);
    EXPECT_EQ(sizeOf(pacer.take(5.5)), 49U);
    EXPECT_EQ(sizeOf(pacer.take(99)), 50U);
}

TEST(Pacer, ItsOwnAlarmsLetTheLastByteOutOnTime) {
    Pacer pacer(true);
    pacer.add({piece(130, 9600)}, 0);
    pacer.add({piece(8, 4800)}, 0.01);
    double now = 0;
    std::size_t out = 0;
    int alarms = 0;
    while (const auto due = pacer.due()) {
        ASSERT_GT(*due, now);
        now = *due;
        out += sizeOf(pacer.take(now));
        ++alarms;
    }
    EXPECT_EQ(out, 138U);
    EXPECT_NEAR(now, 130 * 10 / 9600.0 + 8 * 10 / 4800.0, 1e-6);
    EXPECT_LT(alarms, 70) << "no alarm for every byte";
}

TEST(Pacer, TheLineStaysBusyAfterALateTake) {
    Pacer pacer(true);
    pacer.add({piece(1, 1000)}, 0);
    EXPECT_EQ(sizeOf(pacer.take(0.01)), 1U);
    pacer.add({piece(1, 1000)}, 0.005);
    EXPECT_NEAR(*pacer.due(), 0.02, 1e-9) << "queued while the byte before was still on its way";
    pacer.take(1);
    pacer.add({piece(1, 1000)}, 2);
    EXPECT_NEAR(*pacer.due(), 2.01, 1e-9) << "an idle line starts at once";
}

}  // namespace
}  // namespace marlune::receivers
