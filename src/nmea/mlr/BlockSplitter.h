// Cuts the byte stream of an MLR receiver into blocks, wherever the reads cut it.
//
// Between two blocks stand a carriage return, a line feed and the start mark 0x8B of the second.
// The closing block contains "FIN"; nothing follows it, so its line ending completes it.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace marlune {

class BlockSplitter {
public:
    // No more of a block is kept; the rest of it is dropped. Real ones have a few hundred bytes.
    static constexpr std::size_t kLongestBlock = std::size_t{1} << 20U;

    // Takes what arrived and returns the blocks that it completed, with exactly one start mark in
    // front and without line ending; they last until the next call. What follows the closing block
    // is ignored.
    const std::vector<std::string>& take(std::string_view arrived) {
        if (arrived.size() == 1 && arrived.front() != '\n' && gathered_ < room_) {
            gather_[gathered_++] = arrived.front();
        } else {
            split(arrived);
        }
        return completed_;
    }

    // The closing block was returned.
    [[nodiscard]] bool isClosed() const { return closed_; }

private:
    void split(std::string_view arrived);
    void takeLines();
    [[nodiscard]] bool holdsClosing(std::size_t end);
    [[nodiscard]] std::string block(std::size_t end) const;
    void keepRest();

    // Bytes that come one by one and cannot complete a block wait here for one that may: a line
    // feed, or what follows it.
    std::array<char, 512> gather_{};
    std::size_t gathered_ = 0;
    std::size_t room_ = 0;  // in gather_ for now: 0 when the next byte may decide something
    std::vector<std::string> completed_;
    std::string rest_;          // from the start of the block under assembly
    std::size_t start_ = 0;     // of that block in rest_, while take() runs
    std::size_t scanned_ = 0;   // in rest_: no line ending begins before it
    std::size_t searched_ = 0;  // in rest_: no "FIN" ends before it
    bool sawClosing_ = false;   // the block under assembly contains "FIN"
    bool closed_ = false;
};

}  // namespace marlune
