// The line to a receiver: a serial port of the platform, or a scripted one in tests. This is the
// seam; ComPort adds the control's own rules to it.
//
// Time-outs are the same everywhere: the first byte within 1000 ms + 100 ms per byte asked, then
// 100 ms between bytes, all within that first span; writing has none, but ends when the host
// requests a stop. A port that is closed, or whose device has gone, reads as silence without
// waiting.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace marlune {

class Host;

struct QueueSizes {
    std::int32_t input = 1024;
    std::int32_t output = 1024;
};

class SerialPort {
public:
    SerialPort() = default;
    SerialPort(const SerialPort&) = delete;
    SerialPort& operator=(const SerialPort&) = delete;
    virtual ~SerialPort() = default;

    // Opens the device for this program alone and applies the settings text ("baud=9600 parity=n
    // data=8 stop=1"; what the text does not name stays as it is). Input that already waits is
    // kept. What this port had open is closed first. Returns 0 or the system's error code. When the
    // settings cannot be applied the device is closed again but handle() keeps its value, so
    // isOpen() still answers true until close(); reads and writes then do nothing.
    virtual std::int32_t open(const std::string& device, const std::string& settings,
                              QueueSizes queues) = 0;

    // Closes the device; handle() becomes -1.
    virtual void close() = 0;

    // The platform's handle; values below 1 mean closed.
    [[nodiscard]] virtual std::int64_t handle() const = 0;

    [[nodiscard]] bool isOpen() const { return handle() >= 1; }

    // True when reads cannot bring anything any more and return at once: the port is closed, its
    // settings failed, or the device was unplugged.
    [[nodiscard]] virtual bool isGone() const = 0;

    // Fills `into` as the time-outs allow and returns how many bytes came; 0 is silence. Returns
    // early when the host requests a stop.
    virtual std::size_t read(std::span<std::uint8_t> into) = 0;

    // How many bytes are already here and can be read without waiting, as far as that is known
    // without asking the system: what was read ahead. A caller that reads single bytes may take
    // them in one piece.
    [[nodiscard]] virtual std::size_t available() const { return 0; }

    // Writes everything and returns how many bytes the system took.
    virtual std::size_t write(std::span<const std::uint8_t> bytes) = 0;

    // Hears the device out before a connection ends: reads and drops what arrives until the line
    // has been quiet for 100 ms either way, 500 ms at most. Otherwise the rest of an answer would
    // meet whoever opens the port next. Returns early when the host requests a stop.
    virtual void settle() {}

    // Discards what waits to be read, read ahead or not, and what waits to be sent; bytes that
    // write() has returned for are on their way.
    virtual void purge() = 0;
};

// The platform's port. The host is asked whether to stop while a read waits.
std::unique_ptr<SerialPort> makeSystemSerialPort(Host& host);

}  // namespace marlune
