#include "garmin/link/UsbGarminLink.h"

#include <array>
#include <iterator>
#include <string>
#include <utility>

#include "usb/UsbSession.h"

namespace marlune {
namespace {

constexpr std::size_t kBulkBlock = 4096;
constexpr int kOneBlockTimeout = 200;
constexpr int kEitherPipeTimeout = 1000;
constexpr int kStreamTimeout = 1500;

bool isApplication(const GrmUSBPacket& packet) {
    return packet.GetPtype() == GrmUSBPacket::kApplication;
}

}  // namespace

UsbGarminLink::UsbGarminLink(Services& services, UsbLease& usb, Answer answer,
                             std::string_view sendLabel)
    : services_(services),
      usb_(usb),
      answer_(answer),
      sendLabel_(sendLabel),
      reader_(usb, services) {}

std::vector<std::uint8_t> UsbGarminLink::build(std::uint8_t pid,
                                               std::span<const std::uint8_t> data) {
    auto packet = GrmUSBPacket::build(GrmUSBPacket::kApplication, pid, data);
    services_.trace.traceLineOf([&] { return std::string(sendLabel_) + decimalDump(packet); });
    return packet;
}

bool UsbGarminLink::send(std::uint8_t pid, std::span<const std::uint8_t> data) {
    requested_ = false;
    const auto packet = build(pid, data);
    return usb_.writeBlock(packet) == static_cast<int>(packet.size());
}

bool UsbGarminLink::request(std::uint8_t pid, std::span<const std::uint8_t> data) {
    requested_ = true;
    auto packets = reader_.getBlocks(build(pid, data));
    gathered_.assign(std::make_move_iterator(packets.begin()),
                     std::make_move_iterator(packets.end()));
    return !gathered_.empty();
}

LinkPacket UsbGarminLink::linkPacket(GrmUSBPacket packet) {
    received_ = std::move(packet);
    return {received_.GetPid(), received_.GetData()};
}

LinkPacket UsbGarminLink::receive() {
    if (requested_) {
        if (gathered_.empty()) {
            return {};
        }
        LinkPacket packet = linkPacket(std::move(gathered_.front()));
        gathered_.pop_front();
        return packet;
    }
    switch (answer_) {
        case Answer::oneBlock:
            return receiveOneBlock();
        case Answer::eitherPipe:
            return receiveFromEitherPipe();
        case Answer::stream:
            return receiveFromStream();
    }
    return {};
}

LinkPacket UsbGarminLink::receiveOneBlock() {
    auto packet = readInterruptPacket(usb_, kOneBlockTimeout);
    return packet ? linkPacket(std::move(*packet)) : LinkPacket();
}

LinkPacket UsbGarminLink::receiveFromEitherPipe() {
    auto packet = readInterruptPacket(usb_, kEitherPipeTimeout);
    if (packet && packet->isDataAvailable()) {
        services_.trace.traceLine("Mode BULK");
        std::array<std::uint8_t, kBulkBlock> block{};
        const int count = usb_.readBulkBlock(block, kEitherPipeTimeout);
        const std::span<const std::uint8_t> bytes = block;
        packet.emplace(bytes.first(static_cast<std::size_t>(count)));
    } else if (packet && isApplication(*packet)) {
        services_.trace.traceLine("Mode Interrupt");
    }
    return packet && isApplication(*packet) ? linkPacket(std::move(*packet)) : LinkPacket();
}

LinkPacket UsbGarminLink::receiveFromStream() {
    auto packet = reader_.nextPacket(kStreamTimeout);
    return packet ? linkPacket(std::move(*packet)) : LinkPacket();
}

}  // namespace marlune
