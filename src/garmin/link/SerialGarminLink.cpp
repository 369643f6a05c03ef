#include "garmin/link/SerialGarminLink.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "base/RunTimeError.h"
#include "garmin/link/GpsPacket.h"
#include "garmin/link/PacketIds.h"

namespace marlune {
namespace {

// Stands for what was no frame: packet id 1, no data. Its checksum is wrong, and nobody looks at
// it.
constexpr std::array<std::uint8_t, 6> kSubstituteFrame = {16, 1, 0, 254, 16, 3};

std::vector<std::uint8_t> substituteFrame() {
    return {kSubstituteFrame.begin(), kSubstituteFrame.end()};
}

// Finds the end of a frame in the bytes behind its size byte.
class FrameEnd {
public:
    explicit FrameEnd(std::uint8_t size) : size_(size) {}

    // Takes the next byte; true when it ends the frame.
    bool take(std::uint8_t byte) {
        if (byte == kDle) {
            count_ += pending_ ? 0 : 1;  // the stuffing partner does not count
            pending_ = !pending_;
            dleSeen_ = true;
            return false;
        }
        const bool ends = byte == kEtx && dleSeen_ && count_ >= size_;
        ++count_;
        pending_ = false;
        dleSeen_ = false;
        return ends;
    }

private:
    std::size_t size_;
    std::size_t count_ = 0;
    bool pending_ = false;
    bool dleSeen_ = false;
};

// Takes the bytes behind the size byte that are here already in one piece, but no more than the
// size tells: so many are data and checksum at the least, and cannot hold the frame's end.
void takeWaiting(PortLease& port, std::vector<std::uint8_t>& frame, FrameEnd& end) {
    const std::size_t header = frame.size();
    const std::size_t count = std::min<std::size_t>(frame.back(), port.available());
    frame.resize(header + count);
    const std::span<std::uint8_t> body = std::span(frame).subspan(header);
    port.readArrived(body);
    for (const std::uint8_t byte : body) {
        end.take(byte);
    }
}

// As FrameEnd, for the timed read, which counts positions in the whole frame.
class TimedFrameEnd {
public:
    explicit TimedFrameEnd(std::uint8_t size) : expected_(size + std::size_t{3}) {}

    bool take(std::uint8_t byte, std::size_t position) {
        if (byte == kDle) {
            expected_ += pending_ ? 1 : 0;
            pending_ = !pending_;
            dleSeen_ = true;
            return false;
        }
        const bool ends = byte == kEtx && dleSeen_ && position >= expected_;
        pending_ = false;
        dleSeen_ = false;
        return ends;
    }

private:
    std::size_t expected_;
    bool pending_ = false;
    bool dleSeen_ = false;
};

// The longest frame that a size byte allows, every byte behind the start stuffed.
std::size_t longestFrame(std::uint8_t size) {
    return 9 + 2 * std::size_t{size};
}

}  // namespace

bool SerialGarminLink::send(std::uint8_t pid, std::span<const std::uint8_t> data) {
    const std::vector<std::uint8_t>& frame = sent_.Build(pid, data);
    if (sent_.errorNumber() != 0) {
        const RunTimeError error{RunTimeError::overflow};
        services_.trace.traceLine("Erreur " + std::to_string(error.number()) + " " + error.what());
        return false;
    }
    return grmSendPacket(frame) == frame.size();
}

LinkPacket SerialGarminLink::receive() {
    constexpr double kUnusedTimeout = 1.0;
    const std::vector<std::uint8_t>& frame = grmReadPacket(kUnusedTimeout);
    received_.Parse(frame);
    return {received_.GetPid(), received_.data(), frame.size() > 1, received_.isDamaged()};
}

void SerialGarminLink::acknowledge(std::uint8_t pid) {
    const std::array<std::uint8_t, 2> data = {pid, 0};
    send(pid::kAck, data);
}

std::size_t SerialGarminLink::grmSendPacket(std::span<const std::uint8_t> frame) {
    const std::size_t written = port_.write(frame);
    traceFrame("Send ", frame);
    return written;
}

const std::vector<std::uint8_t>& SerialGarminLink::grmReadPacket(double /*timeout*/) {
    const std::uint8_t first = port_.readByte();
    if (first == 0) {
        return frame_ = {0};
    }
    if (first != kDle) {
        return frame_ = substituteFrame();
    }
    const std::uint8_t id = port_.readByte();
    const std::uint8_t size = port_.readByte();
    const std::size_t longest = longestFrame(size);
    frame_.reserve(longest);
    frame_ = {first, id, size};
    FrameEnd end(size);
    takeWaiting(port_, frame_, end);
    for (;;) {
        const std::uint8_t byte = port_.readByte();
        if (frame_.size() < longest) {
            frame_.push_back(byte);
        }
        if (end.take(byte)) {
            break;
        }
        // A zero may be silence, and a full frame noise: then ask whether anybody still waits.
        if ((byte == 0 || frame_.size() == longest) && ended()) {
            return frame_ = {0};
        }
    }
    traceFrame("Get ", frame_);
    return frame_;
}

std::vector<std::uint8_t> SerialGarminLink::readFirstThree(double seconds) {
    const double start = std::floor(services_.host.secondsClock());
    do {
        std::vector<std::uint8_t> head = port_.read(3);
        if (head.size() == 3) {
            return head;
        }
        if (port_.isGone()) {
            services_.host.pause(0.1);
        }
    } while (services_.host.secondsClock() <= start + seconds && port_.holds() &&
             !services_.host.stopRequested());
    return {};
}

std::vector<std::uint8_t> SerialGarminLink::drainNonFrame(std::span<const std::uint8_t> head) {
    constexpr double kSettle = 2.0;
    constexpr double kSlice = 0.1;
    const double start = services_.host.secondsClock();
    while (services_.host.secondsClock() < start + kSettle && !services_.host.stopRequested()) {
        services_.host.processEvents();
        services_.host.pause(kSlice);
    }
    std::array<std::uint8_t, 255> rest{};
    const std::size_t count = port_.readArrived(rest);
    services_.trace.traceLineOf([&] {
        return "Erreur - " + decimalDump(head) + " - " +
               decimalDump(std::span<const std::uint8_t>(rest).first(count));
    });
    return substituteFrame();
}

std::vector<std::uint8_t> SerialGarminLink::grmReadPacketTimed(double seconds) {
    std::vector<std::uint8_t> frame = readFirstThree(seconds);
    if (frame.empty()) {
        return substituteFrame();
    }
    if (frame[0] != kDle) {
        return drainNonFrame(frame);
    }
    const std::size_t longest = longestFrame(frame[2]);
    TimedFrameEnd end(frame[2]);
    // Checksum, 16 and 3 follow the data.
    const std::vector<std::uint8_t> body = port_.read(frame[2] + std::size_t{3});
    bool done = false;
    for (std::size_t i = 0; i < body.size() && !done; ++i) {
        frame.push_back(body[i]);
        done = end.take(body[i], frame.size() - 1);
    }
    for (std::size_t position = frame.size(); !done; ++position) {
        const std::uint8_t byte = port_.readByte();
        if (frame.size() < longest) {
            frame.push_back(byte);
        }
        done = end.take(byte, position);
        if (!done && (byte == 0 || frame.size() == longest) && ended()) {
            return substituteFrame();
        }
    }
    traceFrame("Get ", frame);
    return frame;
}

void SerialGarminLink::traceFrame(std::string_view word, std::span<const std::uint8_t> frame) {
    services_.trace.traceLineOf([&] { return std::string(word) + decimalDump(frame); });
}

}  // namespace marlune
