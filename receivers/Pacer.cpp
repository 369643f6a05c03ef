#include "receivers/Pacer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace marlune::receivers {
namespace {

// Bytes are let out in groups of this duration: fine enough for any reader's time-outs, coarse
// enough not to wake up for every byte.
constexpr double kGroup = 0.004;

// Sums of byte times are inexact in the last digits.
constexpr double kSlack = 1e-9;

}  // namespace

double Pacer::byteTime(const Said& piece) {
    return piece.baud > 0 ? 10.0 / piece.baud : 0.0;
}

void Pacer::add(std::vector<Said> said, double now) {
    for (Said& piece : said) {
        if (piece.bytes.empty()) {
            continue;
        }
        if (queue_.empty()) {
            // The line may still be busy with the byte before.
            begun_ = std::max(begun_, now);
        }
        backlog_ += piece.bytes.size();
        queue_.push_back(std::move(piece));
    }
}

std::vector<Said> Pacer::take(double now) {
    std::vector<Said> out;
    while (!queue_.empty()) {
        const std::size_t left = queue_.front().bytes.size() - taken_;
        const double each = byteTime(queue_.front());
        std::size_t count = left;
        if (paced_ && each > 0) {
            const double crossed = std::floor((now - begun_ + kSlack) / each);
            count =
                crossed <= 0 ? 0 : std::min(left, static_cast<std::size_t>(std::min(crossed, 1e9)));
            begun_ += static_cast<double>(count) * each;
        }
        if (count == 0) {
            break;
        }
        out.push_back(takeFront(count));
        if (count < left) {
            break;
        }
    }
    return out;
}

Said Pacer::takeFront(std::size_t count) {
    Said& front = queue_.front();
    Said piece;
    piece.baud = front.baud;
    backlog_ -= count;
    if (taken_ == 0 && count == front.bytes.size()) {
        piece.bytes = std::move(front.bytes);
        queue_.pop_front();
        return piece;
    }
    const auto first = front.bytes.begin() + static_cast<std::ptrdiff_t>(taken_);
    piece.bytes.assign(first, first + static_cast<std::ptrdiff_t>(count));
    taken_ += count;
    if (taken_ == front.bytes.size()) {
        taken_ = 0;
        queue_.pop_front();
    }
    return piece;
}

std::optional<double> Pacer::due() const {
    if (queue_.empty()) {
        return std::nullopt;
    }
    if (!paced_) {
        return begun_;
    }
    const Said& front = queue_.front();
    const double each = byteTime(front);
    const double whole = static_cast<double>(front.bytes.size() - taken_) * each;
    return begun_ + std::min(whole, std::max(each, kGroup));
}

}  // namespace marlune::receivers
