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
const std::string kClosing = "\x8Bhhhh\0FIN"s;

Blocks split(const std::vector<std::string>& reads) {
    BlockSplitter splitter;
    Blocks all;
    for (const std::string& read : reads) {
        const Blocks& complete = splitter.take(read);
        all.insert(all.end(), complete.begin(), complete.end());
    }
    return all;
}

TEST(BlockSplitter, GivesTheSameBlocksWhereverTheStreamIsCut) {
    // Records that hold what looks like half a seam, a second mark, and the closing text's parts.
    const Blocks expected = {"\x8Bhhhh\1DEBUT", "\x8Bhhhh\2a\r\nb\r\r\nFI", "\x8B\x8Bhhh\1\rNFI",
                             "\x8B", kClosing};
    std::string stream = expected[0];
    for (std::size_t i = 1; i < expected.size(); ++i) {
        stream += "\r\n" + expected[i];
    }
    stream += "\r\n";
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
    EXPECT_EQ(splitter.take("\n\x8Bmore\r\n\x8B"), Blocks{kClosing});
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
    const BlocMLR block("\x8Bhhhh\3aabbc");
    EXPECT_EQ(block.recordCount(), 3U);
    EXPECT_EQ(block.recordLength(), 0U) << "five bytes are not three records";
    EXPECT_EQ(block.Decoder(2), (std::vector<std::string_view>{"aa", "bb", "c"}));
    EXPECT_EQ(block.Decoder(9), (std::vector<std::string_view>{"aabbc", "", ""}));
    EXPECT_EQ(block.Decoder(-1), (std::vector<std::string_view>{"", "", ""}));
    EXPECT_EQ(BlocMLR("\x8Bhhhh\2aabb").recordLength(), 2U);
    EXPECT_TRUE(BlocMLR("\x8Bhhhh\0aabb"s).Decoder(2).empty());
    EXPECT_EQ(BlocMLR("\x8Bhhh").recordCount(), 0U);
    EXPECT_EQ(BlocMLR("\x8Bhhhh\xFF").recordCount(), 255U);
}

}  // namespace
}  // namespace marlune
