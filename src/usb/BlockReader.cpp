#include "usb/BlockReader.h"

#include "usb/BlockTrace.h"

namespace marlune {
namespace {

constexpr std::size_t kBulkBlock = 4096;
constexpr int kGatherTimeout = 500;
// Reads in a row that bring no packet nearer: more of them is a fault, not an answer.
constexpr int kFruitlessReads = 16;
// No receiver holds as much; a unit that never ends must not fill the memory.
constexpr std::size_t kMostGathered = 64U << 20U;

}  // namespace

std::vector<GrmUSBPacket> BlockReader::getBlocks(std::span<const std::uint8_t> request) {
    std::vector<GrmUSBPacket> packets;
    restart();
    if (usb_.writeBlock(request) <= 0) {
        return packets;
    }
    std::size_t gathered = 0;
    while (gathered < kMostGathered) {
        auto packet = next(kGatherTimeout, kGatherTimeout);
        if (!packet) {
            break;
        }
        gathered += GrmUSBPacket::kHeaderSize + packet->GetData().size();
        packets.push_back(std::move(*packet));
    }
    return packets;
}

void BlockReader::restart() {
    mode_ = Mode::undetermined;
    assembler_.clear();
    short_ = false;
}

std::optional<GrmUSBPacket> BlockReader::nextPacket(int timeoutMilliseconds) {
    // Not 0, which some systems take for ever.
    constexpr int kNoWait = 1;
    return next(timeoutMilliseconds, kNoWait);
}

std::optional<GrmUSBPacket> BlockReader::next(int timeoutMilliseconds, int after) {
    constexpr double kMillisecond = 0.001;
    double heard = services_.host.secondsClock();
    for (int fruitless = 0; fruitless < kFruitlessReads;) {
        if (auto packet = assembler_.take()) {
            return packet;
        }
        fruitless += assembler_.isPartial() ? 0 : 1;
        if (services_.host.stopRequested()) {
            break;
        }
        const double silence = services_.host.secondsClock() - heard;
        const bool passed = silence > (timeoutMilliseconds - 1) * kMillisecond;
        const int timeout = passed ? after : timeoutMilliseconds;
        if (mode_ == Mode::bulk) {
            readBulk(timeout);
        } else if (!readInterrupt(timeout)) {
            break;
        }
        if (assembler_.isPartial()) {
            heard = services_.host.secondsClock();
        }
    }
    dropPartial();
    return std::nullopt;
}

bool BlockReader::readInterrupt(int timeoutMilliseconds) {
    block_.assign(kInterruptBlock, 0);
    const int count = usb_.readInterruptBlock(block_, timeoutMilliseconds);
    tellHost(count, timeoutMilliseconds);
    // Within an interrupt run an empty block ends the reading as silence does.
    if (count < 0 || (count == 0 && mode_ == Mode::interrupt)) {
        return false;
    }
    block_.resize(static_cast<std::size_t>(count));
    dropWhatWasCutShort(GrmUSBPacket(block_).isDataAvailable());
    if (!assembler_.isPartial()) {
        determineMode();
    }
    if (mode_ == Mode::interrupt) {
        append(kInterruptBlock);
    }
    return true;
}

void BlockReader::dropWhatWasCutShort(bool isNotice) {
    if (short_ && (isNotice || PacketAssembler::begins(block_))) {
        dropPartial();
    }
}

void BlockReader::append(std::size_t capacity) {
    assembler_.append(block_);
    short_ = block_.size() < capacity;
}

void BlockReader::determineMode() {
    const GrmUSBPacket head(block_);
    const bool inRun = mode_ == Mode::interrupt;
    if (!inRun) {
        services_.trace.traceLineOf([&] { return blockLine("GetBlocks: ", block_); });
    }
    if (head.isDataAvailable()) {
        // Also in the middle of an interrupt run: units mix the pipes, and what waits on the bulk
        // pipe would be lost.
        services_.trace.traceLine("Mode BULK");
        mode_ = Mode::bulk;
    } else if (head.GetPtype() == GrmUSBPacket::kApplication && !inRun) {
        services_.trace.traceLine("Mode Interrupt");
        mode_ = Mode::interrupt;
    } else if (!inRun) {
        services_.trace.traceLine("Mode Indéterminé pid: " + std::to_string(head.GetPid()));
    }
}

void BlockReader::readBulk(int timeoutMilliseconds) {
    block_.resize(kBulkBlock);
    const int count = usb_.readBulkBlock(block_, timeoutMilliseconds);
    tellHost(count, timeoutMilliseconds);
    if (count > 0) {
        block_.resize(static_cast<std::size_t>(count));
        dropWhatWasCutShort(false);
        append(kBulkBlock);
        return;
    }
    dropPartial();
    mode_ = Mode::undetermined;
}

void BlockReader::tellHost(int count, int timeoutMilliseconds) {
    if (count > 0) {
        services_.host.bytesCame();
    } else if (count < 0 || mode_ == Mode::bulk) {
        services_.host.waitedForBytes(timeoutMilliseconds / 1000.0);
    }
}

void BlockReader::dropPartial() {
    if (assembler_.isPartial()) {
        services_.trace.traceLine("Paquet incomplet");
        assembler_.clear();
    }
}

}  // namespace marlune
