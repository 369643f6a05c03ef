#include "FuzzPort.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>
#include <string_view>

namespace marlune {
namespace {

// A piece begins with a byte that tells its kind: so many bytes as they are, a frame or a sentence
// that is right, or the end of the line. With the flag another piece follows at once.
constexpr std::uint8_t kMoreFlag = 0x80;
constexpr std::uint8_t kLongestPlain = 0x5F;
constexpr std::uint8_t kSentence = 0x7C;
constexpr std::uint8_t kUnplug = 0x7F;

}  // namespace

std::uint8_t FuzzInput::byte() {
    if (left_.empty()) {
        return 0;
    }
    const std::uint8_t first = left_.front();
    left_ = left_.subspan(1);
    return first;
}

std::vector<std::uint8_t> FuzzInput::bytes(std::size_t count) {
    const auto taken = left_.first(std::min(count, left_.size()));
    left_ = left_.subspan(taken.size());
    return {taken.begin(), taken.end()};
}

void FuzzPort::beginService() {
    patience_ = kPatience;
    host_.stop = false;
}

void FuzzPort::sayAll() {
    said_ = input_.bytes(std::numeric_limits<std::size_t>::max());
    taken_ = 0;
}

std::int32_t FuzzPort::open(const std::string& /*device*/, const std::string& /*settings*/,
                            QueueSizes /*queues*/) {
    handle_ = 3;
    return 0;
}

std::size_t FuzzPort::read(std::span<std::uint8_t> into) {
    if (isGone()) {
        losePatience(1);
        return 0;
    }
    const std::size_t count = std::min(into.size(), left());
    std::copy_n(said_.begin() + static_cast<std::ptrdiff_t>(taken_), count, into.begin());
    taken_ += count;
    if (count < into.size()) {
        beSilent(into.size(), count);
    }
    return count;
}

void FuzzPort::beSilent(std::size_t asked, std::size_t came) {
    host_.advance(came == 0 ? 1.0 + 0.1 * static_cast<double>(asked) : 0.1);
    if (came == 0) {
        losePatience(kSilence);
    } else {
        patience_ = kPatience;
    }
    sayNext();
}

void FuzzPort::losePatience(int much) {
    patience_ -= much;
    if (patience_ < 0) {
        host_.stop = true;
    }
}

std::size_t FuzzPort::write(std::span<const std::uint8_t> bytes) {
    if (isGone()) {
        return 0;
    }
    sayNext();
    return bytes.size();
}

void FuzzPort::purge() {
    said_.clear();
    taken_ = 0;
}

void FuzzPort::sayNext() {
    if (left() == 0) {
        purge();
    }
    while (!input_.empty() && !unplugged_ && sayPiece(input_.byte())) {
    }
}

// Whether another piece follows at once.
bool FuzzPort::sayPiece(std::uint8_t kind) {
    const auto plain = static_cast<std::uint8_t>(kind & ~kMoreFlag);
    if (plain == kUnplug) {
        unplugged_ = true;
    } else if (plain <= kLongestPlain) {
        const std::vector<std::uint8_t> bytes = input_.bytes(plain);
        said_.insert(said_.end(), bytes.begin(), bytes.end());
    } else if (plain >= kSentence) {
        saySentence();
    } else {
        sayFrame();
    }
    return (kind & kMoreFlag) != 0;
}

// Packet id, size, data.
void FuzzPort::sayFrame() {
    const std::uint8_t pid = input_.byte();
    const std::vector<std::uint8_t> frame = garminFrame(pid, input_.bytes(input_.byte()));
    said_.insert(said_.end(), frame.begin(), frame.end());
}

// Size, text; the "$" and what follows the text are added.
void FuzzPort::saySentence() {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const std::vector<std::uint8_t> text = input_.bytes(input_.byte());
    const std::uint8_t sum =
        std::accumulate(text.begin(), text.end(), std::uint8_t{0}, std::bit_xor<>());
    said_.push_back('$');
    said_.insert(said_.end(), text.begin(), text.end());
    for (const char end : {'*', kDigits[sum >> 4U], kDigits[sum & 0xFU], '\r', '\n'}) {
        said_.push_back(static_cast<std::uint8_t>(end));
    }
}

}  // namespace marlune
