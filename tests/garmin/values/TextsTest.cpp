#include <gtest/gtest.h>

#include "garmin/values/Chaine.h"

namespace marlune {
namespace {

TEST(Chaine, ReplacesBlanksOnly) {
    EXPECT_EQ(Chaine::Remplace("A B C", ""), "ABC");
    EXPECT_EQ(Chaine::Remplace("A B\tC", "--"), "A--B\tC");
}

TEST(Chaine, ReversesPiecesOfCharacters) {
    EXPECT_EQ(Chaine::Inverse("ABCDEF", 2), "EFCDAB");
    EXPECT_EQ(Chaine::Inverse("ABCDE", 2), "ECDAB");
    EXPECT_EQ(Chaine::Inverse("ÉTÉ1", 1), "1ÉTÉ");
    EXPECT_EQ(Chaine::Inverse("ABC", 9), "ABC");
    EXPECT_EQ(Chaine::Inverse("ABC", 0), "");
}

}  // namespace
}  // namespace marlune
