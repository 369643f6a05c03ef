#include "receivers/usb/ReceiverFunction.h"

#include <utility>

namespace marlune::receivers {
namespace {

constexpr std::size_t kInterruptPacket = 64;

bool isUsbLayer(const std::vector<std::uint8_t>& packet) {
    return packet.empty() || packet.front() == 0;
}

// "Data available": type 0, id 2, no data.
UsbMessage dataAvailable() {
    return {UsbPipe::interruptIn, {0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0}};
}

}  // namespace

std::vector<UsbMessage> ReceiverFunction::takeOutput() {
    std::vector<UsbMessage> messages;
    bool bulk = false;
    for (Said& said : receiver_->takeSaid()) {
        const bool wantsBulk =
            habit_ == Habit::bulk ||
            (habit_ == Habit::mixed && (bulk || said.bytes.size() > kInterruptPacket));
        if (isUsbLayer(said.bytes) || !wantsBulk) {
            messages.push_back({UsbPipe::interruptIn, std::move(said.bytes)});
            continue;
        }
        if (!bulk) {
            messages.push_back(dataAvailable());
            bulk = true;
        }
        messages.push_back({UsbPipe::bulkIn, std::move(said.bytes)});
    }
    if (bulk) {
        messages.push_back({UsbPipe::bulkIn, {}});
    }
    return messages;
}

}  // namespace marlune::receivers
