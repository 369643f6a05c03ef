#include "garmin/link/GpsPacket.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "base/RunTimeError.h"

namespace marlune {
namespace {

// Whether packet id, size, data and checksum, which plain begins with, are all there and add to 0.
bool sumsUp(std::span<const std::uint8_t> plain, std::uint8_t size) {
    const std::size_t count = std::size_t{size} + 3;
    return plain.size() >= count &&
           std::accumulate(plain.begin(), plain.begin() + static_cast<std::ptrdiff_t>(count), 0U) %
                   256 ==
               0;
}

}  // namespace

const std::vector<std::uint8_t>& GpsPacket::Build(std::uint8_t pid,
                                                  std::span<const std::uint8_t> data) {
    pid_ = pid;
    errorNumber_ = 0;
    frame_.clear();
    if (data.size() > std::numeric_limits<std::uint8_t>::max()) {
        errorNumber_ = RunTimeError::overflow;
        return frame_;
    }
    size_ = static_cast<std::uint8_t>(data.size());
    data_.assign(data.begin(), data.end());

    frame_.reserve(2 * data.size() + 9);
    frame_.push_back(kDle);
    const auto append = [this](std::uint8_t byte) {
        frame_.push_back(byte);
        if (byte == kDle) {
            frame_.push_back(kDle);
        }
    };
    std::uint8_t sum = 0;
    const auto appendSummed = [&](std::uint8_t byte) {
        append(byte);
        sum = static_cast<std::uint8_t>(sum + byte);
    };
    appendSummed(pid_);
    appendSummed(size_);
    std::for_each(data.begin(), data.end(), appendSummed);
    append(static_cast<std::uint8_t>(-sum));
    frame_.push_back(kDle);
    frame_.push_back(kEtx);
    return frame_;
}

bool GpsPacket::Parse(std::span<const std::uint8_t> frame) {
    constexpr std::size_t kHeader = 3;
    data_.clear();
    data_.reserve(frame.size());
    // The whole frame is unstuffed, its end pair included.
    for (std::size_t i = 0; i < frame.size(); ++i) {
        data_.push_back(frame[i]);
        if (frame[i] == kDle && i + 1 < frame.size() && frame[i + 1] == kDle) {
            ++i;
        }
    }
    if (data_.size() <= kHeader) {
        data_.clear();
        pid_ = 0;
        size_ = 0;
        damaged_ = false;
        return false;
    }
    pid_ = data_[1];
    size_ = data_[2];
    damaged_ = !sumsUp(std::span<const std::uint8_t>(data_).subspan(1), size_);
    data_.erase(data_.begin(), data_.begin() + kHeader);
    data_.resize(std::min<std::size_t>(size_, data_.size()));
    return true;
}

namespace GpsBuffer {

std::vector<std::uint8_t> Inverse(std::span<const std::uint8_t> bytes) {
    return {bytes.rbegin(), bytes.rend()};
}

std::vector<std::uint8_t> Supp16(std::span<const std::uint8_t> bytes, bool keepFirst) {
    constexpr std::size_t kEnd = 2;
    if (bytes.size() <= kEnd) {
        throw RunTimeError(RunTimeError::overflow);
    }
    const std::size_t end = bytes.size() - kEnd;
    std::vector<std::uint8_t> out;
    out.reserve(bytes.size());
    for (std::size_t i = 0; i < end; ++i) {
        const bool stuffed = bytes[i] == kDle && !(i == 0 && keepFirst);
        i += stuffed ? 1 : 0;
        if (i < end) {
            out.push_back(bytes[i]);
        }
    }
    out.insert(out.end(), bytes.begin() + static_cast<std::ptrdiff_t>(end), bytes.end());
    return out;
}

}  // namespace GpsBuffer

}  // namespace marlune
