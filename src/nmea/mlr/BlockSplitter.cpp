#include "nmea/mlr/BlockSplitter.h"

#include <algorithm>

#include "nmea/mlr/BlocMLR.h"

namespace marlune {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kClosing = "FIN";

}  // namespace

void BlockSplitter::split(std::string_view arrived) {
    completed_.clear();
    room_ = 0;
    if (closed_) {
        return;
    }
    rest_.append(gather_.data(), gathered_);
    gathered_ = 0;
    rest_ += arrived;
    takeLines();
    const bool decided = completed_.empty() && !rest_.ends_with('\n');
    room_ = decided ? gather_.size() : 0;
}

void BlockSplitter::takeLines() {
    for (;;) {
        const std::size_t end = rest_.find(kLineEnd, scanned_);
        if (end == std::string::npos) {
            // The last byte may be the first half of a line ending.
            scanned_ = std::max(scanned_, rest_.size() - (rest_.empty() ? 0 : 1));
            break;
        }
        scanned_ = end;
        if (holdsClosing(end)) {
            completed_.push_back(block(end));
            closed_ = true;
            rest_.clear();
            return;
        }
        const std::size_t next = end + kLineEnd.size();
        if (next == rest_.size()) {
            break;  // the next byte decides whether this is a seam
        }
        scanned_ = next;
        if (rest_[next] == BlocMLR::kStartMark) {
            completed_.push_back(block(end));
            start_ = next;
            searched_ = next;
            sawClosing_ = false;
        }
    }
    keepRest();
}

// Whether the block under assembly, up to end, contains the closing text.
bool BlockSplitter::holdsClosing(std::size_t end) {
    const std::string_view unsearched =
        std::string_view(rest_).substr(searched_, end - std::min(searched_, end));
    sawClosing_ = sawClosing_ || unsearched.find(kClosing) != std::string_view::npos;
    const std::size_t overlap = kClosing.size() - 1;
    searched_ = std::max(searched_, end - std::min(overlap, end));
    return sawClosing_;
}

std::string BlockSplitter::block(std::size_t end) const {
    const std::string_view text =
        std::string_view(rest_).substr(start_, std::min(end - start_, kLongestBlock));
    // Only the first piece of a stream can lack its mark: noise in front of it.
    const bool marked = !text.empty() && text.front() == BlocMLR::kStartMark;
    return marked ? std::string(text) : BlocMLR::kStartMark + std::string(text);
}

// Drops what was returned, and the middle of a block that is too long. The last bytes stay: they
// may begin a line ending or the closing text.
void BlockSplitter::keepRest() {
    rest_.erase(0, start_);
    scanned_ -= start_;
    searched_ -= start_;
    start_ = 0;
    constexpr std::size_t kTail = 2;
    if (rest_.size() <= kLongestBlock + kTail) {
        return;
    }
    (void)holdsClosing(rest_.size());
    rest_.erase(kLongestBlock, rest_.size() - kTail - kLongestBlock);
    scanned_ = kLongestBlock;
    searched_ = kLongestBlock;
}

}  // namespace marlune
