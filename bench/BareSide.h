// The bare exchange that a download is measured beside: two programs that only read and write the
// same bytes in the same turns.
#pragma once

#include <cstdint>
#include <string>

#include "Exchange.h"
#include "PtyDevice.h"

namespace marlune::bench {

// The host's side, with a device of its own.
class BareSide {
public:
    // So many records of that data type; throws std::runtime_error.
    BareSide(const std::string& type, std::uint32_t records);
    BareSide(const BareSide&) = delete;
    BareSide& operator=(const BareSide&) = delete;
    ~BareSide();

    void run();
    // Waits until the device has heard all.
    void settle() { device_.awaitDownloads(++runs_); }
    [[nodiscard]] const PtyDevice& device() const { return device_; }

private:
    PtyDevice device_;
    std::uint32_t runs_ = 0;
    Exchange exchange_;
    int line_;
};

}  // namespace marlune::bench
