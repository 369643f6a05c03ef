#include "receivers/garmin/Frame.h"

#include <algorithm>
#include <numeric>

namespace marlune::receivers::garmin {
namespace {

constexpr std::uint8_t kDle = 16;
constexpr std::uint8_t kEtx = 3;
constexpr std::size_t kLongestData = 255;
constexpr std::size_t kAroundData = 3;  // id, size, checksum

std::uint8_t sumOf(std::span<const std::uint8_t> bytes) {
    return static_cast<std::uint8_t>(std::accumulate(bytes.begin(), bytes.end(), 0U));
}

void stuff(std::vector<std::uint8_t>& frame, std::uint8_t byte) {
    frame.insert(frame.end(), byte == kDle ? 2 : 1, byte);
}

}  // namespace

std::vector<std::uint8_t> frameOf(std::uint8_t id, std::span<const std::uint8_t> data) {
    data = data.first(std::min(data.size(), kLongestData));
    const auto size = static_cast<std::uint8_t>(data.size());
    std::vector<std::uint8_t> frame;
    frame.reserve(data.size() + 8);
    frame.push_back(kDle);
    stuff(frame, id);
    stuff(frame, size);
    for (const std::uint8_t byte : data) {
        stuff(frame, byte);
    }
    stuff(frame, static_cast<std::uint8_t>(0U - id - size - sumOf(data)));
    frame.push_back(kDle);
    frame.push_back(kEtx);
    return frame;
}

FrameReader::Outcome FrameReader::take(std::uint8_t byte) {
    switch (state_) {
        case State::idle:
            state_ = byte == kDle ? State::idleDle : State::idle;
            return Outcome::more;
        case State::idleDle:
            if (byte == kEtx) {
                state_ = State::idle;
            } else if (byte != kDle) {
                begin(byte);
            }
            return Outcome::more;
        case State::body:
            if (byte == kDle) {
                state_ = State::bodyDle;
            } else {
                keep(byte);
            }
            return Outcome::more;
        case State::bodyDle:
            return takeAfterDle(byte);
    }
    return Outcome::more;
}

FrameReader::Outcome FrameReader::takeAfterDle(std::uint8_t byte) {
    if (byte == kEtx) {
        return finish();
    }
    if (byte == kDle) {
        state_ = State::body;
        keep(kDle);
    } else {
        begin(byte);
    }
    return Outcome::more;
}

void FrameReader::begin(std::uint8_t id) {
    state_ = State::body;
    body_.assign(1, id);
}

void FrameReader::keep(std::uint8_t byte) {
    body_.push_back(byte);
    if (body_.size() > kLongestData + kAroundData) {
        state_ = State::idle;
    }
}

FrameReader::Outcome FrameReader::finish() {
    state_ = State::idle;
    packet_.id = body_.front();
    packet_.data.clear();
    if (body_.size() < kAroundData || body_[1] + kAroundData != body_.size() || sumOf(body_) != 0) {
        return Outcome::bad;
    }
    packet_.data.assign(body_.begin() + 2, body_.end() - 1);
    return Outcome::packet;
}

}  // namespace marlune::receivers::garmin
