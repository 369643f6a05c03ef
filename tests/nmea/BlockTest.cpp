// MLR data blocks: how the stream is cut, and how a block is.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "nmea/mlr/BlocMLR.h"
#include "nmea/mlr/BlockSplitter.h"

namespace marlune {
namespace {

using namespace std::string_literals;
using Blocks = std::vector<std::string>;

const std::string kSeam = "\r\n\x8B";
const std::string kClosing =
    "\x8B"
    "hhhh\0FIN"s;

Blocks split(const std::vector<std::string>& reads) {
    BlockSplitter splitter;
    Blocks all;
    for (const std::string& read : reads) {
        for (std::string& block : splitter.take(read)) {
            all.push_back(std::move(block));
        }
    }
    return all;
}

TEST(BlockSplitter, GivesTheSameBlocksWhereverTheStreamIsCut) {
    // Records that hold what looks like half a seam, a second mark, and the closing text's parts.
    const std::string stream =
        "\x8B"
        "hhhh\x01"
        "DEBUT" +
        kSeam +
        "hhhh\x02"
        "a\r\nb\r\r\nFI" +
        kSeam +
        "\x8B"
        "hhh\x01\rNFI" +
        kSeam + kSeam + "hhhh\0FIN"s + "\r\n";
    const Blocks expected = {
        "\x8B"
        "hhhh\x01"
        "DEBUT",
        "\x8B"
        "hhhh\x02"
        "a\r\nb\r\r\nFI",
        "\x8B\x8B"
        "hhh\x01\rNFI",
        "\x8B", kClosing};
    EXPECT_EQ(split({stream}), expected);
    for (std::size_t first = 0; first <= stream.size(); ++first) {
        for (std::size_t second = first; second <= stream.size(); ++second) {
            ASSERT_EQ(split({stream.substr(0, first), stream.substr(first, second - first),
                             stream.substr(second)}),
                      expected)
                << first << ' ' << second;
        }
    }
}

TEST(BlockSplitter, ClosesAtTheLineEndBehindFin) {
    BlockSplitter splitter;
    EXPECT_TRUE(splitter.take(kClosing).empty()) << "the block is not complete";
    EXPECT_TRUE(splitter.take("\r").empty());
    EXPECT_FALSE(splitter.isClosed());
    EXPECT_EQ(splitter.take("\n\x8B"
                            "more\r\n\x8B"),
              Blocks{kClosing});
    EXPECT_TRUE(splitter.isClosed());
    EXPECT_TRUE(splitter.take(kSeam + "FIN\r\n").empty());
}

TEST(BlockSplitter, MarksNoiseInFrontOfTheFirstBlock) {
    EXPECT_EQ(split({"noise" + kSeam + "x" + kSeam}), (Blocks{"\x8Bnoise", "\x8Bx"}));
}

TEST(BlockSplitter, BoundsABlockWithoutEnd) {
    const std::string head(BlockSplitter::kLongestBlock, 'a');
    const std::string tail =
        std::string(BlockSplitter::kLongestBlock, 'b') + kSeam + "short" + kSeam;
    const Blocks expected = {"\x8B" + head.substr(1), "\x8Bshort"};
    const std::string stream = "\x8B" + head.substr(1) + tail;
    EXPECT_EQ(split({stream}), expected);
    Blocks reads;
    for (std::size_t at = 0; at < stream.size(); at += 512) {
        reads.push_back(stream.substr(at, 512));
    }
    EXPECT_EQ(split(reads), expected);
}

TEST(BlocMLR, IsCutIntoRecords) {
    const BlocMLR block(
        "\x8B"
        "hhhh\x03"
        "aabbc");
    EXPECT_EQ(block.recordCount(), 3U);
    EXPECT_EQ(block.recordLength(), 0U) << "five bytes are not three records";
    EXPECT_EQ(block.Decoder(2), (std::vector<std::string_view>{"aa", "bb", "c"}));
    EXPECT_EQ(block.Decoder(9), (std::vector<std::string_view>{"aabbc", "", ""}));
    EXPECT_EQ(block.Decoder(-1), (std::vector<std::string_view>{"", "", ""}));
    EXPECT_EQ(BlocMLR("\x8B"
                      "hhhh\x02"
                      "aabb")
                  .recordLength(),
              2U);
    EXPECT_TRUE(BlocMLR("\x8B"
                        "hhhh\0aabb"s)
                    .Decoder(2)
                    .empty());
    EXPECT_EQ(BlocMLR("\x8Bhhh").recordCount(), 0U);
    EXPECT_EQ(BlocMLR("\x8B"
                      "hhhh\xFF")
                  .recordCount(),
              255U);
}

}  // namespace
}  // namespace marlune
