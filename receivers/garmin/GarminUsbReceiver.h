// A Garmin unit at the end of a USB cable: the unit of GarminReceiver with USB packets in place of
// frames. Every hear() is one whole packet of the host's, every piece that it says one of its own.
//
//   type (0 USB layer, 20 application), 3 zeros, id (2), 2 zeros, size of the data (4), data
//
// Nothing is acknowledged. It answers application packets once a session was started (type 0, id
// 5), which it answers with its unit id (type 0, id 6).
#pragma once

#include "receivers/garmin/GarminReceiver.h"

namespace marlune::receivers::garmin {

class GarminUsbReceiver : public GarminReceiver {
public:
    explicit GarminUsbReceiver(Settings settings);

protected:
    void heard(std::span<const std::uint8_t> bytes, double now) override;
    [[nodiscard]] std::vector<std::uint8_t> framed(
        std::uint8_t id, std::span<const std::uint8_t> data) const override;
    [[nodiscard]] bool acknowledges() const override { return false; }

private:
    bool inSession_ = false;
};

// As chosen by the options; the line's speed means nothing. Throws std::invalid_argument.
std::unique_ptr<VirtualReceiver> makeGarminUsbReceiver(const ReceiverOptions& options);

}  // namespace marlune::receivers::garmin
