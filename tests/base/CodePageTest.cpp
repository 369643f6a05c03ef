#include <gtest/gtest.h>

#include "base/CodePage.h"

namespace marlune {
namespace {

TEST(CodePage, EveryByteSurvivesTheWayThereAndBack) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    const std::string utf8 = fromAnsi(all);
    EXPECT_TRUE(isUtf8(utf8));
    EXPECT_EQ(toAnsi(utf8), all);
}

TEST(CodePage, KnowsTheCharactersThatDifferFromLatin1) {
    EXPECT_EQ(fromAnsi("\x80\x9C\xC9"), "€œÉ");
    EXPECT_EQ(toAnsi("€œÉ"), "\x80\x9C\xC9");
    EXPECT_EQ(fromAnsi("\x81"), "\xC2\x81") << "an undefined byte is the C1 control of its code";
}

TEST(CodePage, WhatItLacksBecomesAQuestionMark) {
    EXPECT_EQ(toAnsi("Łódź"),
              "?\xF3"
              "d?");
    EXPECT_EQ(toAnsi("a\xFF\xC3"), "a??") << "bytes that are no UTF-8, one at a time";
    EXPECT_EQ(toAnsi("\U0001F600."), "?.");
}

TEST(CodePage, RejectsMalformedUtf8) {
    for (const char* bad : {"\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82", "\x80"}) {
        EXPECT_FALSE(isUtf8(bad));
    }
    EXPECT_TRUE(isUtf8("É \U0001F600"));
}

TEST(CodePage, TrimsBlanksOnly) {
    EXPECT_EQ(trimBlanks("  a b \t "), "a b \t");
    EXPECT_EQ(trimBlanks("   "), "");
}

}  // namespace
}  // namespace marlune
