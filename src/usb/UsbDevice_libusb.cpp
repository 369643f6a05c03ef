// The receiver's USB device over libusb-1.0. The kernel's own driver for it is detached while the
// device is open, and given back when it is closed.
#include <libusb.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <utility>
#include <vector>

#include "base/SystemError.h"
#include "host/DebugTrace.h"
#include "host/Services.h"
#include "usb/BlockTrace.h"
#include "usb/UsbDevice.h"

namespace marlune {
namespace {

constexpr std::uint16_t kVendor = 0x091E;
constexpr std::uint16_t kProduct = 0x0003;
constexpr int kInterface = 0;
constexpr int kWriteTimeout = 50;
// Discarding: a pipe is empty when it gives nothing for the first, and is left alone after the
// second number of reads, for a unit that never stops sending.
constexpr unsigned kDiscardTimeout = 10;
constexpr int kDiscardReads = 256;

struct FreeContext {
    void operator()(libusb_context* context) const { libusb_exit(context); }
};
struct FreeHandle {
    void operator()(libusb_device_handle* handle) const { libusb_close(handle); }
};
struct FreeDevice {
    void operator()(libusb_device* device) const { libusb_unref_device(device); }
};
struct FreeConfig {
    void operator()(libusb_config_descriptor* config) const {
        libusb_free_config_descriptor(config);
    }
};
using Context = std::unique_ptr<libusb_context, FreeContext>;
using Handle = std::unique_ptr<libusb_device_handle, FreeHandle>;
using Device = std::unique_ptr<libusb_device, FreeDevice>;
using Config = std::unique_ptr<libusb_config_descriptor, FreeConfig>;

// One pipe of the device. Its packet size rules what may be asked of it: a read that is no multiple
// of it can be overrun by the device.
struct Pipe {
    std::uint8_t address = 0;
    std::size_t packetSize = 0;
    // What a read brought beyond the block that was asked for.
    std::vector<std::uint8_t> carried;

    [[nodiscard]] bool exists() const { return packetSize > 0; }
};

// The system's code for a library error, so the trace tells it in the system's words.
int systemCode(int error) {
    static constexpr std::array<std::pair<int, int>, 9> kCodes = {{
        {LIBUSB_ERROR_IO, EIO},
        {LIBUSB_ERROR_INVALID_PARAM, EINVAL},
        {LIBUSB_ERROR_ACCESS, EACCES},
        {LIBUSB_ERROR_NO_DEVICE, ENODEV},
        {LIBUSB_ERROR_NOT_FOUND, ENOENT},
        {LIBUSB_ERROR_BUSY, EBUSY},
        {LIBUSB_ERROR_TIMEOUT, ETIMEDOUT},
        {LIBUSB_ERROR_OVERFLOW, EOVERFLOW},
        {LIBUSB_ERROR_PIPE, EPIPE},
    }};
    const auto* const found = std::find_if(kCodes.begin(), kCodes.end(),
                                           [&](const auto& code) { return code.first == error; });
    return found == kCodes.end() ? EIO : found->second;
}

// "usb:001:004": bus and address, as the system's own tools number them.
std::string pathOf(libusb_device* device) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "usb:%03d:%03d", libusb_get_bus_number(device),
                  libusb_get_device_address(device));
    return text.data();
}

bool isReceiver(libusb_device* device) {
    libusb_device_descriptor descriptor{};
    return libusb_get_device_descriptor(device, &descriptor) == LIBUSB_SUCCESS &&
           descriptor.idVendor == kVendor && descriptor.idProduct == kProduct;
}

Device firstReceiver(libusb_context* context) {
    libusb_device** list = nullptr;
    const auto count = libusb_get_device_list(context, &list);
    Device found;
    for (ssize_t i = 0; i < count && !found; ++i) {
        if (isReceiver(list[i])) {
            found.reset(libusb_ref_device(list[i]));
        }
    }
    if (count >= 0) {
        libusb_free_device_list(list, 1);
    }
    return found;
}

class LibusbDevice : public UsbDevice {
public:
    explicit LibusbDevice(DebugTrace& trace) : trace_(trace) {}
    ~LibusbDevice() override { closeHandle(); }

    std::string findDevicePath() override;
    bool open() override;
    void close() override { closeHandle(); }
    [[nodiscard]] bool isOpen() const override { return handle_ != nullptr; }
    [[nodiscard]] bool isGone() const override { return !isOpen() || gone_; }
    void discard() override;
    int writeBlock(std::span<const std::uint8_t> block) override;
    int readInterruptBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) override;
    int readBulkBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) override;
    std::uint32_t queryApiVersion() override { return LIBUSB_API_VERSION; }
    std::uint32_t queryPacketSize() override {
        return static_cast<std::uint32_t>(bulkOut_.packetSize);
    }

private:
    using Transfer = int (*)(libusb_device_handle*, unsigned char, unsigned char*, int, int*,
                             unsigned);
    struct Outcome {
        int error;
        int count;
    };

    int openHandle();
    bool takePipes();
    void closeHandle();
    Outcome transfer(Transfer kind, const Pipe& pipe, std::span<std::uint8_t> bytes,
                     unsigned timeout);
    Outcome read(Transfer kind, Pipe& pipe, std::span<std::uint8_t> block, unsigned timeout);
    void discard(Transfer kind, Pipe& pipe);
    void traceError(std::string_view what, int error);

    // A device of the bus, with the context that it lives in.
    struct Place {
        Context context;
        Device device;
    };

    DebugTrace& trace_;
    Place found_;   // what open() will open
    Place opened_;  // what handle_ belongs to, and must outlive
    Handle handle_;
    bool gone_ = false;  // pulled out
    Pipe bulkOut_;
    Pipe bulkIn_;
    Pipe interruptIn_;
};

std::string LibusbDevice::findDevicePath() {
    found_.device.reset();
    found_.context.reset();
    // A new context sees the bus as it is now.
    libusb_context* context = nullptr;
    if (const int error = libusb_init(&context); error != LIBUSB_SUCCESS) {
        traceError("USB: ", error);
        return {};
    }
    found_.context.reset(context);
    found_.device = firstReceiver(context);
    return found_.device ? pathOf(found_.device.get()) : std::string();
}

bool LibusbDevice::open() {
    closeHandle();
    if (found_.device) {
        opened_.device = std::move(found_.device);
        opened_.context = std::move(found_.context);
    }
    if (!opened_.device) {
        return false;
    }
    const int error = openHandle();
    if (error != LIBUSB_SUCCESS) {
        traceError(pathOf(opened_.device.get()) + ": ", error);
        closeHandle();
    }
    return error == LIBUSB_SUCCESS;
}

int LibusbDevice::openHandle() {
    libusb_device_handle* handle = nullptr;
    if (const int error = libusb_open(opened_.device.get(), &handle); error != LIBUSB_SUCCESS) {
        return error;
    }
    handle_.reset(handle);
    gone_ = false;
    // Not supported everywhere; the claim below tells when a driver stands in the way.
    libusb_set_auto_detach_kernel_driver(handle, 1);
    if (const int error = libusb_claim_interface(handle, kInterface); error != LIBUSB_SUCCESS) {
        return error;
    }
    return takePipes() ? LIBUSB_SUCCESS : LIBUSB_ERROR_NOT_FOUND;
}

bool LibusbDevice::takePipes() {
    libusb_config_descriptor* raw = nullptr;
    if (libusb_get_active_config_descriptor(opened_.device.get(), &raw) != LIBUSB_SUCCESS) {
        return false;
    }
    const Config config(raw);
    if (config->bNumInterfaces == 0 || config->interface[kInterface].num_altsetting == 0) {
        return false;
    }
    bulkOut_ = bulkIn_ = interruptIn_ = Pipe();
    const libusb_interface_descriptor& setting = config->interface[kInterface].altsetting[0];
    for (const auto& endpoint : std::span(setting.endpoint, setting.bNumEndpoints)) {
        const bool in = (endpoint.bEndpointAddress & LIBUSB_ENDPOINT_IN) != 0;
        const int type = endpoint.bmAttributes & LIBUSB_TRANSFER_TYPE_MASK;
        // The upper bits of the field are not the size.
        const Pipe pipe = {endpoint.bEndpointAddress, endpoint.wMaxPacketSize & 0x7FFU, {}};
        if (type == LIBUSB_TRANSFER_TYPE_BULK) {
            (in ? bulkIn_ : bulkOut_) = pipe;
        } else if (type == LIBUSB_TRANSFER_TYPE_INTERRUPT && in) {
            interruptIn_ = pipe;
        }
    }
    return bulkOut_.exists() && bulkIn_.exists() && interruptIn_.exists();
}

void LibusbDevice::closeHandle() {
    if (handle_) {
        // Gives the interface back to the kernel's driver. On a device that has gone it fails,
        // and nothing is left to give back.
        libusb_release_interface(handle_.get(), kInterface);
        handle_.reset();
    }
}

void LibusbDevice::discard() {
    if (isOpen()) {
        discard(libusb_bulk_transfer, bulkIn_);
        discard(libusb_interrupt_transfer, interruptIn_);
    }
}

void LibusbDevice::discard(Transfer kind, Pipe& pipe) {
    pipe.carried.clear();
    std::vector<std::uint8_t> scratch(pipe.packetSize);
    for (int i = 0; i < kDiscardReads; ++i) {
        const Outcome outcome = transfer(kind, pipe, scratch, kDiscardTimeout);
        if (outcome.count == 0 && outcome.error != LIBUSB_SUCCESS) {
            return;
        }
    }
}

LibusbDevice::Outcome LibusbDevice::transfer(Transfer kind, const Pipe& pipe,
                                             std::span<std::uint8_t> bytes, unsigned timeout) {
    Outcome outcome = {0, 0};
    outcome.error = kind(handle_.get(), pipe.address, bytes.data(), static_cast<int>(bytes.size()),
                         &outcome.count, timeout);
    if (outcome.error == LIBUSB_ERROR_PIPE) {
        // A stalled pipe stays stalled until it is told to go on.
        libusb_clear_halt(handle_.get(), pipe.address);
    }
    gone_ = gone_ || outcome.error == LIBUSB_ERROR_NO_DEVICE;
    return outcome;
}

int LibusbDevice::writeBlock(std::span<const std::uint8_t> block) {
    if (!isOpen()) {
        return 0;
    }
    // The library's interface is not const, though it only reads what is written.
    std::vector<std::uint8_t> bytes(block.begin(), block.end());
    Outcome outcome = transfer(libusb_bulk_transfer, bulkOut_, bytes, kWriteTimeout);
    if (outcome.error == LIBUSB_SUCCESS && block.size() % bulkOut_.packetSize == 0) {
        // Only a short packet ends a transfer: after full ones an empty one must follow.
        outcome.error = transfer(libusb_bulk_transfer, bulkOut_, {}, kWriteTimeout).error;
    }
    if (outcome.error == LIBUSB_ERROR_TIMEOUT) {
        return -1;
    }
    if (outcome.error != LIBUSB_SUCCESS) {
        traceError("USB: ", outcome.error);
        return 0;
    }
    return outcome.count;
}

LibusbDevice::Outcome LibusbDevice::read(Transfer kind, Pipe& pipe, std::span<std::uint8_t> block,
                                         unsigned timeout) {
    Outcome outcome = {LIBUSB_SUCCESS, 0};
    if (pipe.carried.empty()) {
        const std::size_t packets = std::max<std::size_t>(1, block.size() / pipe.packetSize);
        pipe.carried.resize(packets * pipe.packetSize);
        outcome = transfer(kind, pipe, pipe.carried, timeout);
        pipe.carried.resize(static_cast<std::size_t>(outcome.count));
    }
    const std::size_t count = std::min(block.size(), pipe.carried.size());
    std::copy_n(pipe.carried.begin(), count, block.begin());
    pipe.carried.erase(pipe.carried.begin(),
                       pipe.carried.begin() + static_cast<std::ptrdiff_t>(count));
    outcome.count = static_cast<int>(count);
    if (outcome.error != LIBUSB_SUCCESS && outcome.error != LIBUSB_ERROR_TIMEOUT) {
        traceError("USB: ", outcome.error);
    }
    return outcome;
}

int LibusbDevice::readInterruptBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) {
    if (!isOpen()) {
        return -1;
    }
    const Outcome outcome = read(libusb_interrupt_transfer, interruptIn_, block,
                                 static_cast<unsigned>(timeoutMilliseconds));
    if (outcome.count == 0 && outcome.error != LIBUSB_SUCCESS) {
        return -1;
    }
    const auto came = block.first(static_cast<std::size_t>(outcome.count));
    trace_.traceLineOf([&] { return blockLine("BlockGet: ", came); });
    return outcome.count;
}

int LibusbDevice::readBulkBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) {
    if (!isOpen()) {
        return 0;
    }
    const Outcome outcome =
        read(libusb_bulk_transfer, bulkIn_, block, static_cast<unsigned>(timeoutMilliseconds));
    if (outcome.error == LIBUSB_ERROR_TIMEOUT && outcome.count == 0) {
        trace_.traceLine("--- TIME OUT ----");
    } else if (outcome.error == LIBUSB_SUCCESS || outcome.count > 0) {
        const auto came = block.first(static_cast<std::size_t>(outcome.count));
        trace_.traceLineOf([&] { return blockLine("BlockRead: ", came); });
    }
    return outcome.count;
}

void LibusbDevice::traceError(std::string_view what, int error) {
    trace_.traceLine(std::string(what) + systemErrorText(systemCode(error)));
}

}  // namespace

std::unique_ptr<UsbDevice> makeSystemUsbDevice(DebugTrace& trace) {
    return std::make_unique<LibusbDevice>(trace);
}

}  // namespace marlune
