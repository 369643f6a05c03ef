// A device at the other end of a pty, in a process of its own, that does as little as a device can:
// it reads the number of bytes that the host's turn has and writes the prepared answer.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>

#include "Exchange.h"

namespace marlune::bench {

class PtyDevice {
public:
    // What the device plays: an opening once, then the download again and again. Both are made in
    // the device's process and cost this one no memory. With a line speed in bits per second, bytes
    // take ten bits' time each, in both directions; 0: as fast as it goes.
    struct Part {
        std::function<Exchange()> opening;
        std::function<Exchange()> download;
        std::uint32_t baud = 0;
    };

    // Throws std::system_error.
    explicit PtyDevice(const Part& part);
    PtyDevice(const PtyDevice&) = delete;
    PtyDevice& operator=(const PtyDevice&) = delete;
    // Ends the device's process.
    ~PtyDevice();

    // What the host opens.
    [[nodiscard]] const std::string& path() const { return path_; }

    // Waits until the device has heard all that the opening and so many downloads have. What a host
    // has written may be discarded by its next purge as long as it was not heard.
    void awaitDownloads(std::uint32_t count) const;

    // Processor time that the device has used, user and system together.
    [[nodiscard]] double processorSeconds() const;

private:
    std::string path_;
    std::atomic<std::uint32_t>* finished_;  // exchanges; memory of both processes
    pid_t process_ = -1;
};

// Reads until `into` is full, or the line ends: then false.
bool readAll(int line, std::span<std::uint8_t> into);
bool writeAll(int line, std::span<const std::uint8_t> bytes);

}  // namespace marlune::bench
