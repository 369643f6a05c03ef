// The control's serial port: the seam SerialPort with the control's own rules on top.
//
// PortLease is what a running procedure holds. A handler may close or reopen the port in the middle
// of a transfer; from then on the lease is lost: it reads as silence and writes nothing, so the
// procedure that holds it cannot touch somebody else's connection.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/Services.h"
#include "serial/SerialPort.h"

namespace marlune {

class ComPort {
public:
    ComPort(Host& host, std::unique_ptr<SerialPort> port);

    // Chooses the port: the name becomes "\\.\COM" and the number.
    void setNumber(std::int32_t n);
    [[nodiscard]] const std::string& name() const { return name_; }
    // What the host has bound to that number.
    [[nodiscard]] std::string device() const { return host_.portDevice(number_); }

    // What the next open() applies.
    void setLine(std::string settings);
    void setLine(std::string settings, QueueSizes queues);

    // Opens the port. On failure shows the system's text in a critical box. Returns the system's
    // error code, 0 for success.
    std::int32_t open();
    // Closing a closed port takes it away, too, from a procedure that is about to open it again.
    void close();
    [[nodiscard]] bool isOpen() const { return port_->isOpen(); }
    [[nodiscard]] bool isGone() const { return port_->isGone(); }
    [[nodiscard]] std::int64_t handle() const { return port_->handle(); }

    // Hears the device out; see SerialPort::settle().
    void settle() { port_->settle(); }

    // Discards both queues.
    void ResetComBuffers();

private:
    friend class PortLease;

    Host& host_;
    std::unique_ptr<SerialPort> port_;
    std::int32_t number_ = 0;
    std::string name_;
    std::string settings_;
    QueueSizes queues_;
    std::uint32_t openings_ = 0;  // counts open() and close(): tells a lease that it is lost
};

class PortLease {
public:
    explicit PortLease(ComPort& port) : port_(port), openings_(port.openings_) {}

    // False once somebody else closed or reopened the port since the lease was taken.
    [[nodiscard]] bool holds() const { return openings_ == port_.openings_; }
    // True when reads return at once and bring nothing (closed, unplugged, or the lease is lost).
    // A loop that waits on the clock must let time pass by itself then.
    [[nodiscard]] bool isGone() const { return !holds() || port_.isGone(); }
    [[nodiscard]] bool isOpen() const { return holds() && port_.isOpen(); }

    // Reads one byte; 0 when nothing came within the time-outs.
    std::uint8_t readByte();
    // Reads count bytes. Nothing at all gives the one-byte array 0; a partial read keeps its full
    // length with a tail of zeros.
    std::vector<std::uint8_t> read(std::size_t count);
    // Reads at most into.size() bytes and returns how many came.
    std::size_t readArrived(std::span<std::uint8_t> into);

    std::size_t write(std::span<const std::uint8_t> bytes);
    void ResetComBuffers();

    // How many bytes a read is sure to bring without waiting; see SerialPort::available().
    [[nodiscard]] std::size_t available() const;

    // Closes the port and opens it again with other settings, keeping the lease. Returns as open().
    // whileClosed runs in between; it may close or open the port itself, and then the lease is lost
    // and nothing is opened.
    std::int32_t reopen(const std::string& settings,
                        const std::function<void()>& whileClosed = nullptr);

private:
    ComPort& port_;
    std::uint32_t openings_;
};

// For the text protocols: traces "SEND: " + text and writes it as single-byte characters. False
// when the system did not take all of it.
bool sendText(PortLease& port, DebugTrace& trace, std::string_view text);

}  // namespace marlune
