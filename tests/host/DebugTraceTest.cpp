#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <regex>

#include "base/DateText.h"
#include "base/FilePath.h"
#include "host/DebugTrace.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

class DebugTraceTest : public testing::Test {
protected:
    DebugTraceTest() { (void)home_.write(kFile, "of the connection before"); }

    [[nodiscard]] std::string written() const { return home_.read(kFile); }

    static constexpr const char* kFile = "Mes données Łódź/Palimor/OcxDebug.txt";
    TempFolder home_;
    std::string documents_ = pathText(home_.path() / filePath("Mes données Łódź"));
};

TEST_F(DebugTraceTest, NumbersLinesAlsoWhileDebuggingIsOff) {
    DebugTrace trace(documents_);
    trace.openEmpty();
    trace.setDebug(true);
    trace.traceLine("première");
    trace.setDebug(false);
    trace.traceLine("hidden");
    trace.traceLineOf([] { return "never made"; });
    trace.setDebug(true);
    trace.traceLineOf([] { return std::string("last"); });

    std::smatch numbers;
    const std::string text = written();
    ASSERT_TRUE(
        std::regex_match(text, numbers, std::regex("(\\d+):premi\xE8re\r\n(\\d+):last\r\n")));
    EXPECT_EQ(std::stoi(numbers[2]), std::stoi(numbers[1]) + 3);
}

TEST_F(DebugTraceTest, OpensEmptyOrAppends) {
    DebugTrace trace(documents_);
    trace.setDebug(true);
    trace.openEmpty();
    trace.traceLine("one");
    trace.openAppend();
    trace.traceLine("two");
    EXPECT_NE(written().find("one"), std::string::npos);
    EXPECT_NE(written().find("two"), std::string::npos);
    trace.openEmpty();
    EXPECT_EQ(written(), "");
}

TEST_F(DebugTraceTest, CreatesNoFolder) {
    const std::filesystem::path missing = home_.path() / "missing";
    DebugTrace trace(pathText(missing));
    trace.setDebug(true);
    trace.openEmpty();
    trace.traceLine("lost");
    EXPECT_FALSE(std::filesystem::exists(missing));
}

TEST(Dumps, ShowBytesAsTheTraceDoes) {
    const std::array<std::uint8_t, 4> bytes = {16, 10, 0, 255};
    EXPECT_EQ(decimalDump(bytes), " 16 10 0 255");
    EXPECT_EQ(hexDump(bytes, 3), " 10 A 0");
    EXPECT_EQ(hexDump(bytes, 99), " 10 A 0 FF");
    EXPECT_EQ(hexDump(bytes, -1), "");
}

TEST(DateText, IsDayFirstAndRoundsToSeconds) {
    EXPECT_EQ(formatDate(32874.5), "01/01/1990 12:00:00");
    EXPECT_EQ(formatDate(0.0), "30/12/1899 00:00:00");
    EXPECT_EQ(formatDate(39097.999999), "16/01/2007 00:00:00");
    EXPECT_EQ(formatDate(1e300), "00/00/0000 00:00:00");
}

}  // namespace
}  // namespace marlune
