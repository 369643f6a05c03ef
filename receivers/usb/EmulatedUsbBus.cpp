#include "receivers/usb/EmulatedUsbBus.h"

#include <fcntl.h>
#include <linux/usbdevice_fs.h>
#include <pty.h>
#include <termios.h>
#include <umockdev.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <utility>

namespace marlune::receivers {
namespace {

struct Unref {
    template <class Object>
    void operator()(Object* object) const {
        g_object_unref(object);
    }
};
template <class Object>
using Ref = std::unique_ptr<Object, Unref>;

// The node that programs open. It must be a terminal: usbfs tells that a request is done by making
// the node writable, and a terminal's slave is the one node whose writability a plain process
// rules, by stopping and starting its output. Hanging it up is how a device goes.
class Terminal {
public:
    Terminal() {
        std::array<char, 128> name{};
        if (openpty(&master_, &slave_, name.data(), nullptr, nullptr) != 0) {
            throw std::runtime_error(std::string("no pseudo terminal: ") + std::strerror(errno));
        }
        name_ = name.data();
        termios raw{};
        tcgetattr(slave_, &raw);
        cfmakeraw(&raw);
        tcsetattr(slave_, TCSANOW, &raw);
        setWritable(false);
        for (const int descriptor : {master_, slave_}) {
            fcntl(descriptor, F_SETFD, FD_CLOEXEC);
        }
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() {
        hangUp();
        close(slave_);
    }

    [[nodiscard]] const std::string& name() const { return name_; }
    void setWritable(bool writable) const { tcflow(slave_, writable ? TCOON : TCOOFF); }
    void hangUp() {
        if (master_ >= 0) {
            close(master_);
            master_ = -1;
        }
    }

private:
    int master_ = -1;
    int slave_ = -1;
    std::string name_;
};

std::string hex(const std::vector<std::uint8_t>& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        std::array<char, 3> two{};
        std::snprintf(two.data(), two.size(), "%02X", byte);
        text += two.data();
    }
    return text;
}

std::uint8_t low(std::size_t number) {
    return static_cast<std::uint8_t>(number & 0xFFU);
}
std::uint8_t high(std::size_t number) {
    return static_cast<std::uint8_t>(number >> 8U & 0xFFU);
}

// The device and configuration descriptors: one interface of the vendor's own class, three pipes.
std::vector<std::uint8_t> descriptors(const EmulatedUsbBus::Settings& settings) {
    constexpr std::uint8_t kBulk = 2;
    constexpr std::uint8_t kInterrupt = 3;
    const auto& sizes = settings.packetSizes;
    const auto endpoint = [](std::uint8_t address, std::uint8_t type, std::size_t size,
                             std::uint8_t interval) {
        return std::vector<std::uint8_t>{7, 5, address, type, low(size), high(size), interval};
    };
    std::vector<std::uint8_t> all = {
        18, 1, 0x10, 0x01, 0xFF, 0xFF, 0xFF, 64, low(settings.vendor), high(settings.vendor),
        low(settings.product), high(settings.product), 1, 0, 0, 0, 0, 1,
        // Configuration of 39 bytes in all, then its interface.
        9, 2, 39, 0, 1, 1, 0, 0x80, 50, 9, 4, 0, 0, 3, 0xFF, 0xFF, 0xFF, 0};
    for (const auto& one : {endpoint(UsbPipes::kBulkOut, kBulk, sizes.bulk, 0),
                            endpoint(UsbPipes::kBulkIn, kBulk, sizes.bulk, 0),
                            endpoint(UsbPipes::kInterruptIn, kInterrupt, sizes.interrupt, 1)}) {
        all.insert(all.end(), one.begin(), one.end());
    }
    return all;
}

constexpr const char* kSysPath = "/devices/pci0000:00/0000:00:14.0/usb1/1-1";

std::string number(int value) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "%03d", value);
    return text.data();
}

std::string deviceText(const EmulatedUsbBus::Settings& settings) {
    const std::string node = "bus/usb/001/" + number(settings.address);
    const std::string address = std::to_string(settings.address);
    return std::string("P: ") + kSysPath + "\nN: " + node +
           "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nE: BUSNUM=001\nE: DEVNUM=" +
           number(settings.address) + "\nE: DEVNAME=/dev/" + node +
           "\nE: MAJOR=189\nE: MINOR=" + std::to_string(settings.address - 1) +
           "\nA: busnum=1\\n\nA: devnum=" + address +
           "\\n\nA: speed=12\\n\nA: bConfigurationValue=1\\n\nH: descriptors=" +
           hex(descriptors(settings)) + "\n";
}

}  // namespace

struct EmulatedUsbBus::Impl {
    // A request as the program knows it: the structure and the buffer in its memory.
    struct Urb {
        Ref<UMockdevIoctlData> block;
        Ref<UMockdevIoctlData> buffer;
    };

    Impl(UsbFunction& function, const Settings& theSettings)
        : settings(theSettings), pipes(function, theSettings.packetSizes) {}

    [[nodiscard]] double now() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }

    static gboolean onIoctl(UMockdevIoctlBase* base, UMockdevIoctlClient* client, gpointer self);

    void plugIn();
    void serve(UMockdevIoctlClient* client);
    void submit(UMockdevIoctlClient* client);
    void reap(UMockdevIoctlClient* client);
    void discard(UMockdevIoctlClient* client);
    void clearHalt(UMockdevIoctlClient* client);
    void driverRequest(UMockdevIoctlClient* client);
    void pullOut();
    void showDone();
    void keepTime();

    Settings settings;
    mutable std::mutex mutex;
    std::condition_variable changed;
    UsbPipes pipes;
    Counts counts;
    bool driver = true;
    bool gone = false;
    bool ending = false;
    std::map<std::uint64_t, Urb> urbs;
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();

    Terminal terminal;  // before the testbed: it hides the system's terminals
    Ref<UMockdevTestbed> testbed;
    Ref<UMockdevIoctlBase> handler;
    std::string root;
    std::thread timer;
};

namespace {

bool isInput(std::uint8_t endpoint) {
    return (endpoint & 0x80U) != 0;
}

void complete(UMockdevIoctlClient* client, int error) {
    umockdev_ioctl_client_complete(client, error == 0 ? 0 : -1, error);
}

Ref<UMockdevIoctlData> resolve(UMockdevIoctlData* data, std::size_t offset, std::size_t size) {
    return Ref<UMockdevIoctlData>(umockdev_ioctl_data_resolve(data, offset, size, nullptr));
}

// The client's own.
UMockdevIoctlData* argumentOf(UMockdevIoctlClient* client) {
    return umockdev_ioctl_client_get_arg(client);
}

// The structure that a block of the program's memory holds.
template <class Structure>
Structure read(UMockdevIoctlData* block) {
    Structure value;
    std::memcpy(&value, block->data, sizeof value);
    return value;
}
template <class Structure>
void write(UMockdevIoctlData* block, Structure value) {
    umockdev_ioctl_data_update(block, 0, reinterpret_cast<guint8*>(&value), sizeof value);
}

// The argument itself, for requests whose argument is a name and not a place to write to.
std::uint64_t plainArgument(UMockdevIoctlClient* client) {
    return read<gulong>(argumentOf(client));
}

}  // namespace

gboolean EmulatedUsbBus::Impl::onIoctl(UMockdevIoctlBase* /*base*/, UMockdevIoctlClient* client,
                                       gpointer self) {
    auto& bus = *static_cast<Impl*>(self);
    const std::lock_guard lock(bus.mutex);
    bus.serve(client);
    bus.changed.notify_all();
    return TRUE;
}

void EmulatedUsbBus::Impl::serve(UMockdevIoctlClient* client) {
    const gulong request = umockdev_ioctl_client_get_request(client);
    if (request == USBDEVFS_REAPURBNDELAY) {
        reap(client);
        return;
    }
    if (gone) {
        complete(client, ENODEV);
        return;
    }
    switch (request) {
        case USBDEVFS_GET_CAPABILITIES:
            write<std::uint32_t>(resolve(argumentOf(client), 0, sizeof(std::uint32_t)).get(),
                                 USBDEVFS_CAP_ZERO_PACKET | USBDEVFS_CAP_BULK_CONTINUATION |
                                     USBDEVFS_CAP_NO_PACKET_SIZE_LIM |
                                     USBDEVFS_CAP_REAP_AFTER_DISCONNECT);
            complete(client, 0);
            return;
        case USBDEVFS_DISCONNECT_CLAIM:
            driver = false;
            [[fallthrough]];
        case USBDEVFS_CLAIMINTERFACE:
            ++counts.claims;
            complete(client, driver ? EBUSY : 0);
            return;
        case USBDEVFS_RELEASEINTERFACE:
            ++counts.releases;
            complete(client, 0);
            return;
        case USBDEVFS_SUBMITURB:
            submit(client);
            return;
        case USBDEVFS_DISCARDURB:
            discard(client);
            return;
        case USBDEVFS_CLEAR_HALT:
            clearHalt(client);
            return;
        case USBDEVFS_GETDRIVER:
            complete(client, driver ? 0 : ENODATA);
            return;
        case USBDEVFS_IOCTL:
            driverRequest(client);
            return;
        default:
            complete(client, ENOTTY);
    }
}

void EmulatedUsbBus::Impl::submit(UMockdevIoctlClient* client) {
    if (++counts.requests == settings.unplugAtRequest) {
        pullOut();
        complete(client, ENODEV);
        return;
    }
    Urb kept;
    kept.block = resolve(argumentOf(client), 0, sizeof(usbdevfs_urb));
    const auto urb = read<usbdevfs_urb>(kept.block.get());
    UsbPipes::Request request;
    request.id = kept.block->client_addr;
    request.endpoint = urb.endpoint;
    request.wanted = static_cast<std::size_t>(urb.buffer_length);
    if (request.wanted > 0) {
        kept.buffer = resolve(kept.block.get(), offsetof(usbdevfs_urb, buffer), request.wanted);
        if (!isInput(urb.endpoint)) {
            request.bytes.assign(kept.buffer->data, kept.buffer->data + request.wanted);
        }
    }
    const std::uint64_t id = request.id;
    const int error = pipes.submit(std::move(request), now());
    if (error == 0) {
        urbs[id] = std::move(kept);
    }
    showDone();
    complete(client, error);
}

void EmulatedUsbBus::Impl::reap(UMockdevIoctlClient* client) {
    auto request = pipes.reap();
    if (!request) {
        complete(client, gone ? ENODEV : EAGAIN);
        return;
    }
    const Urb kept = std::move(urbs[request->id]);
    urbs.erase(request->id);
    auto urb = read<usbdevfs_urb>(kept.block.get());
    urb.status = request->status;
    urb.actual_length = static_cast<int>(request->bytes.size());
    write(kept.block.get(), urb);
    if (isInput(request->endpoint) && !request->bytes.empty()) {
        umockdev_ioctl_data_update(kept.buffer.get(), 0, request->bytes.data(),
                                   static_cast<int>(request->bytes.size()));
    }
    const auto answer = resolve(argumentOf(client), 0, sizeof(void*));
    umockdev_ioctl_data_set_ptr(answer.get(), 0, kept.block.get());
    showDone();
    complete(client, 0);
}

void EmulatedUsbBus::Impl::discard(UMockdevIoctlClient* client) {
    const bool found = pipes.discard(plainArgument(client));
    showDone();
    complete(client, found ? 0 : EINVAL);
}

void EmulatedUsbBus::Impl::clearHalt(UMockdevIoctlClient* client) {
    const auto block = resolve(argumentOf(client), 0, sizeof(unsigned));
    pipes.clearHalt(static_cast<std::uint8_t>(read<unsigned>(block.get())));
    complete(client, 0);
}

// Gives the device back to the kernel's driver, or takes it away.
void EmulatedUsbBus::Impl::driverRequest(UMockdevIoctlClient* client) {
    const auto block = resolve(argumentOf(client), 0, sizeof(usbdevfs_ioctl));
    driver = read<usbdevfs_ioctl>(block.get()).ioctl_code == static_cast<int>(USBDEVFS_CONNECT);
    complete(client, 0);
}

void EmulatedUsbBus::Impl::pullOut() {
    if (gone) {
        return;
    }
    gone = true;
    pipes.unplug();
    terminal.hangUp();
    umockdev_testbed_remove_device(testbed.get(), (std::string("/sys") + kSysPath).c_str());
}

// Makes the node writable while requests are done, which is what the program waits for.
void EmulatedUsbBus::Impl::showDone() {
    if (pipes.deviceGone()) {
        pullOut();
    }
    if (!gone) {
        terminal.setWritable(pipes.hasDone());
    }
}

// The device's own time: streams and delays.
void EmulatedUsbBus::Impl::keepTime() {
    std::unique_lock lock(mutex);
    while (!ending) {
        const auto deadline = pipes.nextDeadline();
        if (!deadline) {
            changed.wait(lock);
        } else {
            changed.wait_until(
                lock, start + std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                                  std::chrono::duration<double>(*deadline)));
            if (now() >= *deadline) {
                pipes.elapse(now());
                showDone();
            }
        }
    }
}

void EmulatedUsbBus::Impl::plugIn() {
    testbed.reset(umockdev_testbed_new());
    handler.reset(umockdev_ioctl_base_new());
    g_signal_connect(handler.get(), "handle-ioctl", G_CALLBACK(&Impl::onIoctl), this);
    gchar* folder = umockdev_testbed_get_root_dir(testbed.get());
    root = folder;
    g_free(folder);
    const std::string node = "/dev/bus/usb/001/" + number(settings.address);
    // The handler first: a program may open the device as soon as it is there.
    GError* error = nullptr;
    if (!umockdev_testbed_attach_ioctl(testbed.get(), node.c_str(), handler.get(), &error) ||
        !umockdev_testbed_add_from_string(testbed.get(), deviceText(settings).c_str(), &error)) {
        const std::string text = error == nullptr ? "umockdev refused" : error->message;
        g_clear_error(&error);
        throw std::runtime_error(text);
    }
    std::filesystem::remove(root + node);
    std::filesystem::create_symlink(terminal.name(), root + node);
    timer = std::thread([this] { keepTime(); });
}

EmulatedUsbBus::EmulatedUsbBus(UsbFunction& function, Settings settings)
    : impl_(std::make_unique<Impl>(function, settings)) {
    impl_->plugIn();
}

EmulatedUsbBus::~EmulatedUsbBus() {
    {
        const std::lock_guard lock(impl_->mutex);
        impl_->ending = true;
        impl_->changed.notify_all();
    }
    impl_->timer.join();
    umockdev_testbed_detach_ioctl(impl_->testbed.get(), node().c_str(), nullptr);
}

std::string EmulatedUsbBus::folder() const {
    return impl_->root;
}

std::string EmulatedUsbBus::node() const {
    return "/dev/bus/usb/001/" + number(impl_->settings.address);
}

std::string EmulatedUsbBus::systemNode() const {
    return impl_->terminal.name();
}

void EmulatedUsbBus::unplug() {
    const std::lock_guard lock(impl_->mutex);
    impl_->pullOut();
}

void EmulatedUsbBus::fail(const std::function<void(UsbPipes::Faults&)>& change) {
    const std::lock_guard lock(impl_->mutex);
    change(impl_->pipes.faults);
}

void EmulatedUsbBus::locked(const std::function<void()>& run) {
    const std::lock_guard lock(impl_->mutex);
    run();
}

EmulatedUsbBus::Counts EmulatedUsbBus::counts() const {
    const std::lock_guard lock(impl_->mutex);
    return impl_->counts;
}

bool EmulatedUsbBus::driverAttached() const {
    const std::lock_guard lock(impl_->mutex);
    return impl_->driver;
}

}  // namespace marlune::receivers
