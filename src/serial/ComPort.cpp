#include "serial/ComPort.h"

#include <utility>

#include "base/CodePage.h"
#include "base/SystemError.h"

namespace marlune {

ComPort::ComPort(Host& host, std::unique_ptr<SerialPort> port)
    : host_(host), port_(std::move(port)) {}

void ComPort::setNumber(std::int32_t n) {
    number_ = n;
    name_ = R"(\\.\COM)" + std::to_string(n);
}

void ComPort::setLine(std::string settings) {
    settings_ = std::move(settings);
}

void ComPort::setLine(std::string settings, QueueSizes queues) {
    settings_ = std::move(settings);
    queues_ = queues;
}

std::int32_t ComPort::open() {
    ++openings_;
    const std::int32_t error = port_->open(host_.portDevice(number_), settings_, queues_);
    if (error != 0 && !port_->isOpen()) {
        host_.messageBox(systemErrorText(error), BoxIcon::critical);
    }
    return error;
}

void ComPort::close() {
    ++openings_;
    port_->close();
}

void ComPort::ResetComBuffers() {
    port_->purge();
}

std::uint8_t PortLease::readByte() {
    std::uint8_t byte = 0;
    readArrived({&byte, 1});
    return byte;
}

std::vector<std::uint8_t> PortLease::read(std::size_t count) {
    std::vector<std::uint8_t> bytes(count);
    if (readArrived(bytes) == 0) {
        return {0};
    }
    return bytes;
}

std::size_t PortLease::readArrived(std::span<std::uint8_t> into) {
    return holds() ? port_.port_->read(into) : 0;
}

std::size_t PortLease::write(std::span<const std::uint8_t> bytes) {
    return holds() ? port_.port_->write(bytes) : 0;
}

void PortLease::ResetComBuffers() {
    if (holds()) {
        port_.ResetComBuffers();
    }
}

std::size_t PortLease::available() const {
    return holds() ? port_.port_->available() : 0;
}

std::int32_t PortLease::reopen(const std::string& settings,
                               const std::function<void()>& whileClosed) {
    if (!holds()) {
        return 0;
    }
    port_.close();
    openings_ = port_.openings_;
    port_.setLine(settings);
    if (whileClosed) {
        whileClosed();
    }
    if (!holds()) {
        return 0;
    }
    // Opening may show a box, and the user may act on the port from there.
    openings_ = port_.openings_ + 1;
    return port_.open();
}

bool sendText(PortLease& port, DebugTrace& trace, std::string_view text) {
    trace.traceLineOf([&] { return "SEND: " + std::string(text); });
    const std::vector<std::uint8_t> bytes = toAnsiBytes(text);
    return port.write(bytes) == bytes.size();
}

}  // namespace marlune
