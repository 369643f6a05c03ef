// The serial port of Windows: one handle without overlapped operations, so that a read blocks as
// the driver's time-outs say. Every read is one call: the driver keeps its own queue, and nothing
// is read ahead that purging would have to find again.
#include <windows.h>

#include <utility>

#include "marlune/Host.h"
#include "serial/LineState_windows.h"
#include "serial/SerialPort.h"

namespace marlune {
namespace {

// First byte within 1000 ms + 100 ms per byte asked, then 100 ms between bytes; none for writing.
constexpr COMMTIMEOUTS kTimeouts = {100, 100, 1000, 0, 0};

class WindowsSerialPort : public SerialPort {
public:
    explicit WindowsSerialPort(Host& host) : host_(host) {}
    WindowsSerialPort(const WindowsSerialPort&) = delete;
    WindowsSerialPort& operator=(const WindowsSerialPort&) = delete;
    ~WindowsSerialPort() override { closeHandle(); }

    std::int32_t open(const std::string& device, const std::string& settings,
                      QueueSizes queues) override;
    void close() override;
    [[nodiscard]] std::int64_t handle() const override { return handleValue_; }
    [[nodiscard]] bool isGone() const override { return handle_ == INVALID_HANDLE_VALUE || gone_; }
    std::size_t read(std::span<std::uint8_t> into) override;
    std::size_t write(std::span<const std::uint8_t> bytes) override;
    void settle() override;
    void purge() override;

private:
    // 0, or the error of the first step that failed.
    [[nodiscard]] DWORD applySettings(const std::string& settings, QueueSizes queues) const;
    void closeHandle();
    // Looks at the error of a read or write that failed.
    void noteFailure();

    Host& host_;
    HANDLE handle_ = INVALID_HANDLE_VALUE;
    std::int64_t handleValue_ = -1;  // outlives handle_ when the settings could not be applied
    bool gone_ = false;              // the device was removed
};

std::int32_t WindowsSerialPort::open(const std::string& device, const std::string& settings,
                                     QueueSizes queues) {
    close();
    handle_ = CreateFileA(device.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                          0, nullptr);
    if (handle_ == INVALID_HANDLE_VALUE) {
        return static_cast<std::int32_t>(GetLastError());
    }
    handleValue_ = reinterpret_cast<std::intptr_t>(handle_);
    FlushFileBuffers(handle_);
    PurgeComm(handle_, 0);  // discards nothing, on purpose: input that already waits is kept
    const DWORD error = applySettings(settings, queues);
    if (error != ERROR_SUCCESS) {
        closeHandle();
    }
    return static_cast<std::int32_t>(error);
}

DWORD WindowsSerialPort::applySettings(const std::string& settings, QueueSizes queues) const {
    if (SetupComm(handle_, static_cast<DWORD>(queues.input), static_cast<DWORD>(queues.output)) ==
        FALSE) {
        return GetLastError();
    }
    if (const DWORD error = setLine(handle_, settings); error != ERROR_SUCCESS) {
        return error;
    }
    COMMTIMEOUTS timeouts = kTimeouts;
    return SetCommTimeouts(handle_, &timeouts) != FALSE ? ERROR_SUCCESS : GetLastError();
}

void WindowsSerialPort::close() {
    closeHandle();
    handleValue_ = -1;
}

void WindowsSerialPort::closeHandle() {
    gone_ = false;
    const HANDLE open = std::exchange(handle_, INVALID_HANDLE_VALUE);
    if (open != INVALID_HANDLE_VALUE) {
        CloseHandle(open);
    }
}

std::size_t WindowsSerialPort::read(std::span<std::uint8_t> into) {
    // A read in progress cannot be ended from this thread; its time-outs bound it.
    if (isGone() || host_.stopRequested()) {
        return 0;
    }
    DWORD arrived = 0;
    if (ReadFile(handle_, into.data(), static_cast<DWORD>(into.size()), &arrived, nullptr) ==
        FALSE) {
        noteFailure();
    } else if (arrived > 0) {
        host_.bytesCame();
    } else {
        host_.waitedForBytes(1.0 + 0.1 * static_cast<double>(into.size()));
    }
    return arrived;
}

std::size_t WindowsSerialPort::write(std::span<const std::uint8_t> bytes) {
    DWORD written = 0;
    if (!isGone() && WriteFile(handle_, bytes.data(), static_cast<DWORD>(bytes.size()), &written,
                               nullptr) == FALSE) {
        noteFailure();
    }
    return written;
}

void WindowsSerialPort::noteFailure() {
    // Purging aborts what is pending; every other failure of the driver is lasting.
    gone_ = GetLastError() != ERROR_OPERATION_ABORTED;
}

void WindowsSerialPort::settle() {
    COMMTIMEOUTS quiet = {0, 0, 100, 0, 0};
    COMMTIMEOUTS usual = kTimeouts;
    if (isGone() || SetCommTimeouts(handle_, &quiet) == FALSE) {
        return;
    }
    constexpr ULONGLONG kLongestMilliseconds = 500;
    const ULONGLONG end = GetTickCount64() + kLongestMilliseconds;
    std::uint8_t dropped = 0;
    DWORD arrived = 1;
    while (arrived > 0 && GetTickCount64() < end) {
        arrived = 0;
        ReadFile(handle_, &dropped, 1, &arrived, nullptr);
    }
    SetCommTimeouts(handle_, &usual);
}

void WindowsSerialPort::purge() {
    if (!isGone()) {
        PurgeComm(handle_, PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR);
    }
}

}  // namespace

std::unique_ptr<SerialPort> makeSystemSerialPort(Host& host) {
    return std::make_unique<WindowsSerialPort>(host);
}

}  // namespace marlune
