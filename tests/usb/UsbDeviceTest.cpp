// The device over unmodified libusb, on an emulated bus that models packets, time-outs and cables
// that are pulled out.
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <numeric>
#include <optional>
#include <thread>

#include "base/SystemError.h"
#include "host/Services.h"
#include "receivers/usb/EmulatedUsbBus.h"
#include "support/OrdinaryUser_posix.h"
#include "support/TracedServices.h"
#include "usb/UsbDevice.h"

namespace marlune {
namespace {

namespace fs = std::filesystem;
using receivers::EmulatedUsbBus;
using receivers::UsbMessage;
using receivers::UsbPipe;
using receivers::UsbPipes;
using Bytes = std::vector<std::uint8_t>;

Bytes bytes(std::size_t size) {
    Bytes all(size);
    std::iota(all.begin(), all.end(), std::uint8_t{1});
    return all;
}

// Answers every message of the host with what the test laid ready.
class Answers : public receivers::UsbFunction {
public:
    void hostWrote(std::span<const std::uint8_t> message, double /*now*/) override {
        messages.emplace_back(message.begin(), message.end());
        output = std::exchange(next, {});
    }
    std::vector<UsbMessage> takeOutput() override { return std::exchange(output, {}); }

    std::vector<Bytes> messages;
    std::vector<UsbMessage> next;
    std::vector<UsbMessage> output;
};

class UsbDeviceTest : public testing::Test {
protected:
    void plugIn(EmulatedUsbBus::Settings settings = {}) {
        device_.reset();
        bus_.reset();
        bus_.emplace(answers_, settings);
        device_ = makeSystemUsbDevice(traced_.trace);
    }
    void plugInAndOpen(EmulatedUsbBus::Settings settings = {}) {
        plugIn(settings);
        ASSERT_NE(device_->findDevicePath(), "");
        ASSERT_TRUE(device_->open()) << host_.traceText();
    }
    // Writes anything, which the device answers with these messages.
    void ask(std::vector<UsbMessage> answers) {
        answers_.next = std::move(answers);
        ASSERT_EQ(device_->writeBlock(Bytes{1}), 1);
    }
    Bytes readInterrupt(int timeout = 1000) {
        Bytes block(64);
        const int count = device_->readInterruptBlock(block, timeout);
        EXPECT_GE(count, 0);
        block.resize(static_cast<std::size_t>(std::max(0, count)));
        return block;
    }
    Bytes readBulk(int timeout = 1000) {
        Bytes block(4096);
        block.resize(static_cast<std::size_t>(device_->readBulkBlock(block, timeout)));
        return block;
    }
    void expectNothingToRead() {
        Bytes block(64);
        EXPECT_EQ(device_->readInterruptBlock(block, 1), -1);
        EXPECT_EQ(device_->readBulkBlock(block, 1), 0);
    }

    GpsControlEvents events_;
    TracedServices traced_{events_};
    FakeHost& host_ = traced_.host;
    Answers answers_;
    std::optional<EmulatedUsbBus> bus_;
    std::unique_ptr<UsbDevice> device_;
};

TEST_F(UsbDeviceTest, FindsOpensAndGivesBack) {
    plugInAndOpen();
    EXPECT_EQ(device_->findDevicePath(), "usb:001:004");
    EXPECT_TRUE(device_->isOpen());
    EXPECT_FALSE(bus_->driverAttached()) << "the kernel's driver is out of the way";
    EXPECT_EQ(device_->queryPacketSize(), 64U);
    EXPECT_TRUE(device_->open());
    EXPECT_EQ(bus_->counts().releases, 1) << "opening twice closes first";
    device_->close();
    EXPECT_TRUE(bus_->driverAttached());
    EXPECT_FALSE(device_->isOpen());
}

TEST_F(UsbDeviceTest, NoReceiverIsNoPath) {
    plugIn({.product = 0x0004});
    EXPECT_EQ(device_->findDevicePath(), "");
    EXPECT_FALSE(device_->open());
    EXPECT_EQ(device_->writeBlock(Bytes{1}), 0);
    expectNothingToRead();
}

TEST_F(UsbDeviceTest, ReadsBlocksAndTracesThem) {
    plugInAndOpen();
    ask({{UsbPipe::interruptIn, bytes(14)}, {UsbPipe::bulkIn, bytes(137)}, {UsbPipe::bulkIn, {}}});
    EXPECT_EQ(readInterrupt(), bytes(14));
    EXPECT_EQ(readBulk(), bytes(137)) << "64-byte packets are one block";
    EXPECT_EQ(readBulk(), Bytes()) << "an empty packet";
    EXPECT_EQ(readBulk(1), Bytes());
    const std::string trace = host_.traceText();
    EXPECT_NE(trace.find("BlockGet: 14 - 1 2 3"), std::string::npos);
    EXPECT_NE(trace.find("BlockRead: 137 - 1 2 3"), std::string::npos);
    EXPECT_NE(trace.find("--- TIME OUT ----"), std::string::npos);
    EXPECT_EQ(trace.find("--- TIME OUT ----"), trace.rfind("--- TIME OUT ----"));
}

TEST_F(UsbDeviceTest, InterruptBlocksAreTheSixtyFourBytesAskedFor) {
    plugInAndOpen();
    ask({{UsbPipe::interruptIn, bytes(137)}});
    EXPECT_EQ(readInterrupt().size(), 64U);
    EXPECT_EQ(readInterrupt().size(), 64U);
    EXPECT_EQ(readInterrupt().size(), 9U);
    expectNothingToRead();
}

TEST_F(UsbDeviceTest, CopesWithOtherPacketSizes) {
    plugInAndOpen({.packetSizes = {.bulk = 512, .interrupt = 16}});
    ask({{UsbPipe::interruptIn, bytes(30)},
         {UsbPipe::interruptIn, bytes(48)},
         {UsbPipe::bulkIn, bytes(1000)}});
    EXPECT_EQ(readInterrupt(), bytes(30)) << "a short packet ends a block";
    EXPECT_EQ(readInterrupt(1), bytes(48)) << "what came before the time-out is not lost";
    EXPECT_EQ(readBulk(), bytes(1000));
    EXPECT_EQ(device_->queryPacketSize(), 512U);

    // A pipe of larger packets than a block: nothing is overrun, the rest comes with the next read.
    plugInAndOpen({.packetSizes = {.bulk = 512, .interrupt = 128}});
    ask({{UsbPipe::interruptIn, bytes(100)}});
    EXPECT_EQ(readInterrupt(), bytes(64));
    EXPECT_EQ(readInterrupt().size(), 36U);
}

TEST_F(UsbDeviceTest, AFullLastPacketIsFollowedByAnEmptyOne) {
    plugInAndOpen();
    for (const std::size_t size : {63U, 64U, 128U, 137U}) {
        answers_.messages.clear();
        EXPECT_EQ(device_->writeBlock(bytes(size)), static_cast<int>(size));
        EXPECT_EQ(answers_.messages, std::vector<Bytes>{bytes(size)}) << size;
    }
}

TEST_F(UsbDeviceTest, AWriteThatIsNotTakenTimesOut) {
    plugInAndOpen();
    bus_->fail([](UsbPipes::Faults& faults) { faults.refuseWrites = true; });
    EXPECT_EQ(device_->writeBlock(bytes(12)), -1);
    bus_->fail([](UsbPipes::Faults& faults) { faults.refuseWrites = false; });
    EXPECT_EQ(device_->writeBlock(bytes(12)), 12);
}

TEST_F(UsbDeviceTest, AStalledOrOverrunPipeGoesOnAfterItsFault) {
    plugInAndOpen();
    for (const bool stall : {true, false}) {
        for (const std::uint8_t endpoint : {UsbPipes::kInterruptIn, UsbPipes::kBulkIn}) {
            ask({{UsbPipe::interruptIn, bytes(5)}, {UsbPipe::bulkIn, bytes(6)}});
            bus_->fail([&](UsbPipes::Faults& faults) {
                (stall ? faults.stall : faults.babble) = endpoint;
            });
            Bytes block(64);
            if (endpoint == UsbPipes::kInterruptIn) {
                EXPECT_EQ(device_->readInterruptBlock(block, 1000), -1);
            } else {
                EXPECT_EQ(device_->readBulkBlock(block, 1000), 0);
            }
            EXPECT_EQ(readInterrupt(), bytes(5));
            EXPECT_EQ(readBulk(), bytes(6));
        }
    }
    bus_->fail([](UsbPipes::Faults& faults) { faults.stall = UsbPipes::kBulkOut; });
    EXPECT_EQ(device_->writeBlock(bytes(5)), 0);
    EXPECT_EQ(device_->writeBlock(bytes(5)), 5);
}

TEST_F(UsbDeviceTest, DiscardsWhatIsStale) {
    plugInAndOpen();
    ask({{UsbPipe::interruptIn, bytes(200)},
         {UsbPipe::bulkIn, bytes(6000)},
         {UsbPipe::bulkIn, {}}});
    EXPECT_EQ(readInterrupt().size(), 64U);
    device_->discard();
    expectNothingToRead();
}

// Pulls the device out at its first request, its second, and so on, until everything went well.
TEST_F(UsbDeviceTest, CanBeUnpluggedAtAnyTime) {
    const auto transfer = [&] {
        answers_.next = {{UsbPipe::interruptIn, bytes(80)}, {UsbPipe::bulkIn, bytes(70)}};
        Bytes block(4096);
        const auto interrupt = std::span(block).first(64);
        return device_->writeBlock(bytes(128)) == 128 &&
               device_->readInterruptBlock(interrupt, 1000) == 64 &&
               device_->readInterruptBlock(interrupt, 1000) == 16 &&
               device_->readBulkBlock(block, 1000) == 70;
    };
    bool whole = false;
    for (int request = 1; !whole; ++request) {
        plugInAndOpen({.unplugAtRequest = request});
        whole = transfer();
        if (!whole) {
            EXPECT_LE(device_->writeBlock(bytes(5)), 0);
            expectNothingToRead();
            EXPECT_EQ(device_->findDevicePath(), "");
        }
        device_->close();
        ASSERT_LT(request, 20);
    }
}

TEST_F(UsbDeviceTest, UnpluggingEndsARead) {
    plugInAndOpen();
    // In the middle of it, or just before: the read ends either way, and long before its time.
    std::thread puller([&] { bus_->unplug(); });
    Bytes block(64);
    EXPECT_EQ(device_->readInterruptBlock(block, 60000), -1);
    puller.join();
}

TEST_F(UsbDeviceTest, NoPermissionIsToldInTheSystemsWords) {
    plugIn();
    ASSERT_NE(device_->findDevicePath(), "");
    // Everything but the device itself is open to everybody.
    for (const auto& entry : fs::recursive_directory_iterator(bus_->folder())) {
        if (!entry.is_symlink()) {
            fs::permissions(entry.path(), fs::perms::all);
        }
    }
    fs::permissions(bus_->folder(), fs::perms::all);
    fs::permissions(bus_->systemNode(), fs::perms::none);
    {
        const OrdinaryUser user;
        EXPECT_FALSE(device_->open());
    }
    EXPECT_NE(host_.traceText().find(systemErrorText(EACCES)), std::string::npos)
        << host_.traceText();
}

}  // namespace
}  // namespace marlune
