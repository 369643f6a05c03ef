#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "cli/host/LineReader.h"

namespace marlune::cli {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;

constexpr std::size_t kLongest = 8;

// The lines of a text that arrives in pieces of that size; "<long>" for one that is too long.
std::vector<std::string> linesOf(std::string_view text, std::size_t piece) {
    LineReader reader(kLongest);
    std::vector<std::string> lines;
    const auto take = [&] {
        while (const auto line = reader.next()) {
            lines.push_back(line->tooLong ? "<long>" + line->text : line->text);
        }
    };
    for (; !text.empty(); text.remove_prefix(std::min(piece, text.size()))) {
        reader.feed(text.substr(0, piece));
        take();
    }
    reader.finish();
    take();
    return lines;
}

TEST(LineReader, GivesTheSameLinesHoweverTheBytesArrive) {
    const std::string_view text =
        "one\n\n12345678\n123456789\nafter\r\n\0x\n1234567890123456789\nlast"sv;
    for (std::size_t piece = 1; piece <= text.size(); ++piece) {
        EXPECT_THAT(linesOf(text, piece), ElementsAre("one", "", "12345678", "<long>", "after\r",
                                                      std::string("\0x", 2), "<long>", "last"))
            << "in pieces of " << piece;
    }
}

TEST(LineReader, TheInputMayEndInsideALongLineOrBehindAnEnd) {
    EXPECT_THAT(linesOf("a\n", 1), ElementsAre("a"));
    EXPECT_THAT(linesOf("123456789", 4), ElementsAre("<long>"));
    EXPECT_THAT(linesOf("", 1), ElementsAre());
}

}  // namespace
}  // namespace marlune::cli
