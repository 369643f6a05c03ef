#include <gtest/gtest.h>

#include "serial/ReadDeadline.h"

namespace marlune {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr ReadDeadline::TimePoint kStart{milliseconds(5000)};

TEST(ReadDeadline, GivesTheFirstByteASecondAndATenthPerByteAsked) {
    EXPECT_EQ(ReadDeadline(kStart, 1).left(kStart), milliseconds(1100));
    EXPECT_EQ(ReadDeadline(kStart, 255).left(kStart), milliseconds(26500));
    const ReadDeadline deadline(kStart, 1);
    EXPECT_EQ(deadline.left(kStart + milliseconds(1099)), milliseconds(1));
    EXPECT_EQ(deadline.left(kStart + microseconds(1099001)), milliseconds(1)) << "never 0 too soon";
    EXPECT_EQ(deadline.left(kStart + milliseconds(1100)), milliseconds(0));
    EXPECT_EQ(deadline.left(kStart + milliseconds(9999)), milliseconds(0));
}

TEST(ReadDeadline, GivesTheNextBytesATenthEachWithinTheWhole) {
    ReadDeadline deadline(kStart, 2);
    deadline.arrived(kStart + milliseconds(300));
    EXPECT_EQ(deadline.left(kStart + milliseconds(300)), milliseconds(100));
    deadline.arrived(kStart + milliseconds(390));
    EXPECT_EQ(deadline.left(kStart + milliseconds(400)), milliseconds(90));
    deadline.arrived(kStart + milliseconds(1150));
    EXPECT_EQ(deadline.left(kStart + milliseconds(1150)), milliseconds(50));
}

}  // namespace
}  // namespace marlune
