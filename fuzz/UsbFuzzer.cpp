// USB packets, and the control over a device that answers anything. Input: a byte that chooses what
// reads, then the device's blocks: a byte for the pipe's answer (255 silence, 254 a write that is
// refused, else so many bytes), then the bytes.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "Require.h"
#include "control/ControlFactory.h"
#include "support/FakeHost.h"
#include "support/ScriptedPort.h"
#include "usb/BlockReader.h"
#include "usb/UsbPort.h"

namespace {

using namespace marlune;
using Input = std::span<const std::uint8_t>;

constexpr std::uint8_t kRefused = 254;  // and what is above it is silence

// Without a folder on disk: the trace has no file.
class QuickHost : public FakeHost {
public:
    std::string documentsFolder() override { return "/nonexistent"; }
};

class FuzzedDevice : public UsbDevice {
public:
    FuzzedDevice(FakeHost& host, Input input) : host_(host), input_(input) {}

    std::string findDevicePath() override { return "usb:001:001"; }
    bool open() override { return open_ = true; }
    void close() override { open_ = false; }
    [[nodiscard]] bool isOpen() const override { return open_; }
    int writeBlock(std::span<const std::uint8_t> block) override {
        if (!input_.empty() && input_[0] == kRefused) {
            input_ = input_.subspan(1);
            return -1;
        }
        return static_cast<int>(block.size());
    }
    int readInterruptBlock(std::span<std::uint8_t> block, int timeout) override {
        return read(block, timeout, -1);
    }
    int readBulkBlock(std::span<std::uint8_t> block, int timeout) override {
        return read(block, timeout, 0);
    }
    std::uint32_t queryApiVersion() override { return 0; }
    std::uint32_t queryPacketSize() override { return 64; }

private:
    int read(std::span<std::uint8_t> block, int timeout, int silence) {
        if (input_.empty() || input_[0] >= kRefused) {
            host_.advance(timeout / 1000.0);
            input_ = input_.subspan(input_.empty() ? 0 : 1);
            return silence;
        }
        const std::size_t count =
            std::min({std::size_t{input_[0]}, block.size(), input_.size() - 1});
        input_ = input_.subspan(1);
        std::copy_n(input_.begin(), count, block.begin());
        input_ = input_.subspan(count);
        return static_cast<int>(count);
    }

    FakeHost& host_;
    Input input_;
    bool open_ = false;
};

// Every gathered packet is whole, and nothing is made up.
void gather(Input input) {
    QuickHost host;
    GpsControlEvents events;
    DebugTrace trace("");
    Records records;
    Reports reports;
    Services services{host, events, trace, records, reports};
    UsbPort port(std::make_unique<FuzzedDevice>(host, input));
    port.open();
    UsbLease lease(port);
    BlockReader reader(lease, services);
    std::size_t bytes = 0;
    for (const GrmUSBPacket& packet : reader.getBlocks(input.first(0))) {
        require(packet.GetData().size() == packet.GetDataSize());
        require(packet.GetPtype() == GrmUSBPacket::kApplication);
        bytes += GrmUSBPacket::kHeaderSize + packet.GetData().size();
    }
    require(bytes <= input.size());
    while (reader.nextPacket(1)) {
    }
}

// What a run may raise is bounded by what came.
class Bounded : public GpsControlEvents {
public:
    void PvtData(const std::string& /*line*/) override { require(++raised <= 100000); }
    int raised = 0;
};

void control(Input input) {
    QuickHost host;
    Bounded events;
    const auto control = ControlFactory::make(host, events, std::make_unique<ScriptedPort>(host),
                                              std::make_unique<FuzzedDevice>(host, input));
    GpsControl& gps = *control;
    gps.SetGpsMark("GRM_USB");
    gps.gpsConnect();
    gps.getWaypts();
    gps.GetRoutes();
    gps.getTracks();
    gps.GetTime();
    gps.getPosition();
    gps.StartPvtData();
    require(host.elapsed() < 60.0 + 2.0 * static_cast<double>(input.size()));
}

void parse(Input input) {
    const GrmUSBPacket packet(input);
    require(packet.GetData().size() <= packet.GetDataSize());
    require(packet.GetData().size() <= input.size());
    const auto built = GrmUSBPacket::build(packet.GetPtype(), 7, packet.GetData());
    const GrmUSBPacket again(built);
    require(again.GetData().size() == (packet.GetData().size() == 1 ? 0 : packet.GetData().size()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const Input input = Input(data, size).subspan(1);
    switch (data[0] % 3) {
        case 0:
            parse(input);
            break;
        case 1:
            gather(input);
            break;
        default:
            control(input);
    }
    return 0;
}
