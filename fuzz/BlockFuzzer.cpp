// The MLR block splitter: any cut of a stream gives the same blocks. Input: a byte that chooses the
// cuts, then the stream.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Require.h"
#include "nmea/mlr/BlocMLR.h"
#include "nmea/mlr/BlockSplitter.h"

namespace {

using namespace marlune;

// Pieces of 1 to 8 bytes whose lengths the seed chooses.
std::vector<std::string> split(std::string_view stream, std::uint32_t seed) {
    BlockSplitter splitter;
    std::vector<std::string> blocks;
    while (!stream.empty()) {
        seed = seed * 1664525 + 1013904223;
        const std::size_t length = std::min<std::size_t>((seed >> 24U) % 8 + 1, stream.size());
        const std::vector<std::string>& complete = splitter.take(stream.substr(0, length));
        blocks.insert(blocks.end(), complete.begin(), complete.end());
        stream.remove_prefix(length);
    }
    return blocks;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string_view stream(reinterpret_cast<const char*>(bytes) + 1, size - 1);
    BlockSplitter whole;
    const std::vector<std::string> blocks = whole.take(stream);
    require(split(stream, bytes[0]) == blocks);
    for (const std::string& text : blocks) {
        require(text.front() == BlocMLR::kStartMark);
        require(text.find("\r\n\x8B") == std::string::npos);
        const BlocMLR block(text);
        const std::size_t length = block.recordLength();
        for (const std::string_view record : block.Decoder(static_cast<std::int16_t>(length))) {
            require(length == 0 || length > INT16_MAX || record.size() == length);
        }
    }
    require(!whole.isClosed() || blocks.back().find("FIN") != std::string::npos);
    return 0;
}
