// The receiver's USB device through the maker's Windows driver: found by its interface class, read
// and written by overlapped requests. Blocks from the interrupt pipe come as answers to a control
// request, blocks from the bulk pipe as plain reads.
#include <windows.h>

#include "usb/UsbDevice.h"
// After windows.h:
#include <setupapi.h>
#include <winioctl.h>

#include <array>
#include <cstring>
#include <utility>
#include <vector>

#include "host/DebugTrace.h"
#include "usb/BlockTrace.h"

namespace marlune {
namespace {

// The driver's interface class.
constexpr GUID kInterfaceClass = {
    0x2C9C45C2, 0x8E7D, 0x4C08, {0xA1, 0x2D, 0x81, 0x6B, 0xBA, 0xE7, 0x22, 0xC0}};

// The driver's control codes: buffered, for any access.
constexpr DWORD controlCode(DWORD function) {
    return CTL_CODE(FILE_DEVICE_UNKNOWN, function, METHOD_BUFFERED, FILE_ANY_ACCESS);
}
constexpr DWORD kApiVersion = controlCode(0x800);
constexpr DWORD kInterruptIn = controlCode(0x850);
constexpr DWORD kPacketSize = controlCode(0x851);

constexpr DWORD kWriteMilliseconds = 50;
constexpr DWORD kQueryMilliseconds = 10;

// One kind of overlapped request: its record and its event.
class Overlap {
public:
    Overlap() { record_.hEvent = CreateEventA(nullptr, TRUE, FALSE, nullptr); }
    Overlap(const Overlap&) = delete;
    Overlap& operator=(const Overlap&) = delete;
    ~Overlap() { CloseHandle(record_.hEvent); }

    enum class End { done, failed, timedOut };
    struct Outcome {
        End end;
        DWORD count;
    };

    // start: begins the request on the record it is handed and returns what the system call did.
    template <class Start>
    Outcome run(HANDLE device, DWORD milliseconds, const Start& start) {
        if (start(&record_) == FALSE && GetLastError() != ERROR_IO_PENDING) {
            return {End::failed, 0};
        }
        const bool expired = WaitForSingleObject(record_.hEvent, milliseconds) != WAIT_OBJECT_0;
        if (expired) {
            // The request must not fill the caller's memory later. It may still end by itself
            // before it is cancelled; its bytes count then.
            CancelIoEx(device, &record_);
        }
        DWORD count = 0;
        const bool done = GetOverlappedResult(device, &record_, &count, expired) != FALSE;
        ResetEvent(record_.hEvent);
        if (done) {
            return {End::done, count};
        }
        return {expired ? End::timedOut : End::failed, 0};
    }

private:
    OVERLAPPED record_{};
};

// A list of devices, closed when it is done with.
class DeviceList {
public:
    DeviceList()
        : list_(SetupDiGetClassDevsA(&kInterfaceClass, nullptr, nullptr,
                                     DIGCF_PRESENT | DIGCF_DEVICEINTERFACE)) {}
    DeviceList(const DeviceList&) = delete;
    DeviceList& operator=(const DeviceList&) = delete;
    ~DeviceList() { SetupDiDestroyDeviceInfoList(list_); }

    // The path of the first device; empty when there is none.
    [[nodiscard]] std::string firstPath() const;

private:
    HDEVINFO list_;
};

std::string DeviceList::firstPath() const {
    SP_DEVICE_INTERFACE_DATA device{};
    device.cbSize = sizeof device;
    if (SetupDiEnumDeviceInterfaces(list_, nullptr, &kInterfaceClass, 0, &device) == FALSE) {
        return {};
    }
    DWORD size = 0;
    SetupDiGetDeviceInterfaceDetailA(list_, &device, nullptr, 0, &size, nullptr);
    constexpr std::size_t kPathOffset = offsetof(SP_DEVICE_INTERFACE_DETAIL_DATA_A, DevicePath);
    if (size <= kPathOffset) {
        return {};
    }
    std::vector<char> buffer(size + 1);  // one more, so that the path ends with a zero
    const DWORD recordSize = sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_A);
    std::memcpy(buffer.data(), &recordSize, sizeof recordSize);
    auto* detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_A*>(buffer.data());
    if (SetupDiGetDeviceInterfaceDetailA(list_, &device, detail, size, nullptr, nullptr) == FALSE) {
        return {};
    }
    return buffer.data() + kPathOffset;
}

class WindowsUsbDevice : public UsbDevice {
public:
    explicit WindowsUsbDevice(DebugTrace& trace) : trace_(trace) {}
    WindowsUsbDevice(const WindowsUsbDevice&) = delete;
    WindowsUsbDevice& operator=(const WindowsUsbDevice&) = delete;
    ~WindowsUsbDevice() override { closeHandle(); }

    std::string findDevicePath() override { return path_ = DeviceList().firstPath(); }
    bool open() override;
    void close() override { closeHandle(); }
    [[nodiscard]] bool isOpen() const override { return device_ != INVALID_HANDLE_VALUE; }
    int writeBlock(std::span<const std::uint8_t> block) override;
    int readInterruptBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) override;
    int readBulkBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) override;
    std::uint32_t queryApiVersion() override { return query(kApiVersion, 4); }
    std::uint32_t queryPacketSize() override { return query(kPacketSize, 64); }

private:
    void closeHandle();
    // Whether a write of so many bytes ends with a full packet, behind which the unit waits for
    // more.
    [[nodiscard]] bool endsFull(DWORD count);
    Overlap::Outcome write(std::span<const std::uint8_t> bytes);
    // A control request that only answers.
    Overlap::Outcome control(DWORD code, std::span<std::uint8_t> answer, DWORD milliseconds);
    std::uint32_t query(DWORD code, std::size_t answerLength);

    DebugTrace& trace_;
    std::string path_;
    HANDLE device_ = INVALID_HANDLE_VALUE;
    std::uint32_t packetSize_ = 0;  // of the device that is open; 0: not asked yet
    // Kinds of requests that may be under way at the same time share no event.
    Overlap control_;
    Overlap read_;
    Overlap write_;
};

bool WindowsUsbDevice::open() {
    closeHandle();
    device_ =
        CreateFileA(path_.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr);
    return isOpen();
}

void WindowsUsbDevice::closeHandle() {
    packetSize_ = 0;
    const HANDLE open = std::exchange(device_, INVALID_HANDLE_VALUE);
    if (open != INVALID_HANDLE_VALUE) {
        CloseHandle(open);
    }
}

bool WindowsUsbDevice::endsFull(DWORD count) {
    constexpr std::uint32_t kFullSpeed = 64;
    if (packetSize_ == 0) {
        const std::uint32_t told = queryPacketSize();
        packetSize_ = told != 0 ? told : kFullSpeed;
    }
    return count != 0 && count % packetSize_ == 0;
}

Overlap::Outcome WindowsUsbDevice::write(std::span<const std::uint8_t> bytes) {
    return write_.run(device_, kWriteMilliseconds, [&](OVERLAPPED* record) {
        return WriteFile(device_, bytes.data(), static_cast<DWORD>(bytes.size()), nullptr, record);
    });
}

int WindowsUsbDevice::writeBlock(std::span<const std::uint8_t> block) {
    const auto [end, count] = write(block);
    if (end == Overlap::End::done && count == block.size() && endsFull(count)) {
        write({});
    }
    return end == Overlap::End::timedOut ? -1 : static_cast<int>(count);
}

Overlap::Outcome WindowsUsbDevice::control(DWORD code, std::span<std::uint8_t> answer,
                                           DWORD milliseconds) {
    return control_.run(device_, milliseconds, [&](OVERLAPPED* record) {
        return DeviceIoControl(device_, code, nullptr, 0, answer.data(),
                               static_cast<DWORD>(answer.size()), nullptr, record);
    });
}

int WindowsUsbDevice::readInterruptBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) {
    const auto [end, count] = control(kInterruptIn, block, static_cast<DWORD>(timeoutMilliseconds));
    if (end == Overlap::End::timedOut) {
        return -1;
    }
    trace_.traceLineOf([&, n = count] { return blockLine("BlockGet: ", block.first(n)); });
    return static_cast<int>(count);
}

int WindowsUsbDevice::readBulkBlock(std::span<std::uint8_t> block, int timeoutMilliseconds) {
    const auto [end, count] =
        read_.run(device_, static_cast<DWORD>(timeoutMilliseconds), [&](OVERLAPPED* record) {
            return ReadFile(device_, block.data(), static_cast<DWORD>(block.size()), nullptr,
                            record);
        });
    if (end == Overlap::End::timedOut) {
        trace_.traceLine("--- TIME OUT ----");
        return 0;
    }
    trace_.traceLineOf([&, n = count] { return blockLine("BlockRead: ", block.first(n)); });
    return static_cast<int>(count);
}

std::uint32_t WindowsUsbDevice::query(DWORD code, std::size_t answerLength) {
    std::array<std::uint8_t, 64> answer{};
    control(code, std::span(answer).first(answerLength), kQueryMilliseconds);
    std::uint32_t value = 0;
    std::memcpy(&value, answer.data(), sizeof value);
    return value;
}

}  // namespace

std::unique_ptr<UsbDevice> makeSystemUsbDevice(DebugTrace& trace) {
    return std::make_unique<WindowsUsbDevice>(trace);
}

}  // namespace marlune
