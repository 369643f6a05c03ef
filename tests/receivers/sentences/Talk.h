// A conversation with a virtual receiver in memory, on a clock of the test's own.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/CodePage.h"
#include "receivers/DeviceData.h"
#include "receivers/VirtualReceiver.h"

namespace marlune::receivers {

// What the receivers of these tests hold.
inline constexpr std::string_view kHoldings =
    "W;HOME;48.1173;11.516667;MY HOUSE;152;18;0\n"
    "W;ÉVIAN;-33.5;-151.25;A,B;-3;18;0\n"
    "N;WALK\n"
    "T;48.1173;11.516667;45731.52452835648;152;0\n"
    "T;180;180\n"
    "T;48.117333;11.516667;0;\n"
    "R;3;TRIP\n"
    "W;HOME;48.1173;11.516667;MY HOUSE;152;18;0\n"
    "W;ÉVIAN;-33.5;-151.25;A,B;-3;18;0\n"
    "W;MILL;1;2\n";

// "$", the body, and a checksum that is right.
inline std::string intact(std::string_view utf8) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const std::string body = toAnsi(utf8);
    unsigned sum = 0;
    for (const char c : body) {
        sum ^= static_cast<std::uint8_t>(c);
    }
    return fromAnsi("$" + body + '*' + kDigits[sum >> 4U] + kDigits[sum & 0xFU]);
}

class Talk {
public:
    explicit Talk(std::unique_ptr<VirtualReceiver> receiver) : receiver_(std::move(receiver)) {}

    VirtualReceiver& receiver() { return *receiver_; }

    // Says a line to the receiver and returns what it answers at once, line by line.
    std::vector<std::string> tell(std::string_view line) {
        const std::vector<std::uint8_t> bytes = toAnsiBytes(std::string(line) + "\r\n");
        receiver_->hear(bytes, now_);
        return answers();
    }
    // What it says in that time.
    std::vector<std::string> wait(double seconds) {
        const double end = now_ + seconds;
        std::vector<std::string> lines;
        while (const auto due = nextDue(end)) {
            now_ = std::max(now_, *due);
            receiver_->elapse(now_);
        }
        now_ = end;
        return linesOf(receiver_->takeOutput());
    }
    std::vector<std::string> answers() { return wait(0); }

private:
    std::optional<double> nextDue(double end) {
        const auto due = receiver_->nextDeadline();
        return due && *due <= end ? due : std::nullopt;
    }
    static std::vector<std::string> linesOf(const std::vector<std::uint8_t>& bytes) {
        const std::string text = fromAnsi(bytes);
        std::vector<std::string> lines;
        for (std::size_t start = 0; start < text.size();) {
            const std::size_t end = std::min(text.find("\r\n", start), text.size());
            lines.push_back(text.substr(start, end - start));
            start = end + 2;
        }
        return lines;
    }

    std::unique_ptr<VirtualReceiver> receiver_;
    double now_ = 1000;
};

}  // namespace marlune::receivers
