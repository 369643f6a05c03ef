#include "support/ScriptedUsb.h"

#include <algorithm>
#include <utility>

#include "host/DebugTrace.h"

namespace marlune {

ScriptedUsb::Bytes ScriptedUsb::packet(std::uint8_t type, std::uint16_t id, const Bytes& data) {
    Bytes bytes(12 + data.size());
    bytes[0] = type;
    bytes[4] = static_cast<std::uint8_t>(id % 256U);
    bytes[5] = static_cast<std::uint8_t>(id / 256U);
    for (std::size_t i = 0, size = data.size(); size > 0; ++i, size /= 256U) {
        bytes[8 + i] = static_cast<std::uint8_t>(size % 256U);
    }
    std::copy(data.begin(), data.end(), bytes.begin() + 12);
    return bytes;
}

void ScriptedUsb::play(std::vector<Turn> turns) {
    std::move(turns.begin(), turns.end(), std::back_inserter(turns_));
    playReached();
}

void ScriptedUsb::playReached() {
    while (!turns_.empty() && turns_.front().write.empty()) {
        finishTurn();
    }
}

void ScriptedUsb::finishTurn() {
    const Turn turn = std::move(turns_.front());
    turns_.pop_front();
    answer(turn);
    if (turn.action) {
        turn.action();
    }
}

void ScriptedUsb::answer(const Turn& turn) {
    const double arrival = host_.elapsed() + turn.delay;
    for (const Bytes& block : turn.interrupt) {
        interrupt_.push_back({arrival, block});
    }
    for (const Bytes& block : turn.bulk) {
        bulk_.push_back({arrival, block});
    }
}

std::string ScriptedUsb::problems() const {
    std::string text = failures_;
    for (const Turn& turn : turns_) {
        text += "never reached:" + decimalDump(turn.write) + '\n';
    }
    return text;
}

bool ScriptedUsb::open() {
    close();
    ++openings;
    open_ = opens && !unplugged_ && !path.empty();
    return open_;
}

void ScriptedUsb::discard() {
    const auto hasArrived = [&](const Block& block) { return block.arrival <= host_.elapsed(); };
    std::erase_if(interrupt_, hasArrived);
    std::erase_if(bulk_, hasArrived);
}

int ScriptedUsb::writeBlock(std::span<const std::uint8_t> block) {
    if (!open_ || unplugged_) {
        return 0;
    }
    if (refusals > 0) {
        --refusals;
        host_.advance(0.05);
        return -1;
    }
    const Bytes bytes(block.begin(), block.end());
    if (answersSessions && bytes == packet(0, 5)) {
        ++sessions;
        answer({.interrupt = {packet(0, 6, {1, 2, 3, 4})}});
        return static_cast<int>(bytes.size());
    }
    written.push_back(bytes);
    if (onWrite) {
        onWrite(bytes);
    }
    if (turns_.empty() || turns_.front().write != bytes) {
        failures_ += "written:" + decimalDump(bytes) + "\n  expected:" +
                     (turns_.empty() ? " nothing" : decimalDump(turns_.front().write)) + '\n';
    }
    if (!turns_.empty()) {
        finishTurn();
        playReached();
    }
    return static_cast<int>(bytes.size());
}

int ScriptedUsb::read(Pipe& pipe, std::span<std::uint8_t> block, int timeoutMilliseconds) {
    if (!open_ || unplugged_) {
        return kSilence;
    }
    const double until = host_.elapsed() + timeoutMilliseconds / 1000.0;
    if (pipe.empty() || pipe.front().arrival > until) {
        host_.advance(until - host_.elapsed());
        return kSilence;
    }
    host_.advance(std::max(0.0, pipe.front().arrival - host_.elapsed()));
    Bytes& bytes = pipe.front().bytes;
    const std::size_t count = std::min(block.size(), bytes.size());
    std::copy_n(bytes.begin(), count, block.begin());
    bytes.erase(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
    if (bytes.empty()) {
        pipe.pop_front();
    }
    return static_cast<int>(count);
}

int ScriptedUsb::readInterruptBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) {
    return read(interrupt_, block, timeoutMilliseconds);
}

int ScriptedUsb::readBulkBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) {
    return std::max(0, read(bulk_, block, timeoutMilliseconds));
}

}  // namespace marlune
