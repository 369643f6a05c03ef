#include "usb/UsbPort.h"

#include <utility>

namespace marlune {

UsbPort::UsbPort(std::unique_ptr<UsbDevice> device) : device_(std::move(device)) {}

void UsbPort::use(std::unique_ptr<UsbDevice> device) {
    ++openings_;
    device_ = std::move(device);
}

std::string UsbPort::findDevicePath() {
    return device_ ? device_->findDevicePath() : std::string();
}

bool UsbPort::open() {
    ++openings_;
    return device_ && device_->open();
}

void UsbPort::close() {
    ++openings_;
    if (device_) {
        device_->close();
    }
}

int UsbLease::writeBlock(std::span<const std::uint8_t> block) {
    return answers() ? port_.device_->writeBlock(block) : 0;
}

int UsbLease::readInterruptBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) {
    return answers() ? port_.device_->readInterruptBlock(block, timeoutMilliseconds) : -1;
}

int UsbLease::readBulkBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) {
    return answers() ? port_.device_->readBulkBlock(block, timeoutMilliseconds) : 0;
}

void UsbLease::discard() {
    if (answers()) {
        port_.device_->discard();
    }
}

bool UsbLease::reopen() {
    if (!holds()) {
        return false;
    }
    const bool opened = port_.open();
    openings_ = port_.openings_;
    return opened;
}

}  // namespace marlune
