// The scriptable host on a device that says anything. Input: its lines, a zero byte, then what the
// device says (FuzzPort.h). Whatever it prints is lines of JSON.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <vector>

#include "FuzzPort.h"
#include "Require.h"
#include "cli/host/JsonHostSession.h"
#include "control/ControlFactory.h"

namespace {

using namespace marlune;

// The program's services, but on a clock of their own, and without files and drives.
class ClockedServices : public cli::HostServices {
public:
    using HostServices::HostServices;

    FakeHost clock;

    bool stopRequested() override { return clock.stop || HostServices::stopRequested(); }
    void pause(double seconds) override { clock.pause(seconds); }
    double secondsClock() override { return clock.secondsClock(); }
    double now() override { return clock.now(); }
    std::string documentsFolder() override { return "/nonexistent"; }
    std::string portDevice(int number) override { return clock.portDevice(number); }
    std::vector<Drive> drives() override { return {}; }
};

// A file in memory: neither reading nor writing waits.
class MemoryFile {
public:
    explicit MemoryFile(std::span<const std::uint8_t> bytes) {
        const auto size = static_cast<ssize_t>(bytes.size());
        require(::write(descriptor_, bytes.data(), bytes.size()) == size);
        ::lseek(descriptor_, 0, SEEK_SET);
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::close(descriptor_); }

    [[nodiscard]] int descriptor() const { return descriptor_; }
    [[nodiscard]] std::string text() const {
        std::string all(static_cast<std::size_t>(::lseek(descriptor_, 0, SEEK_END)), '\0');
        require(::pread(descriptor_, all.data(), all.size(), 0) ==
                static_cast<ssize_t>(all.size()));
        return all;
    }

private:
    int descriptor_ = ::memfd_create("fuzz", MFD_CLOEXEC);
};

void requireJsonLines(std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        require(end != std::string_view::npos && nlohmann::json::accept(text.substr(0, end)));
        text.remove_prefix(end + 1);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::span<const std::uint8_t> input(bytes, size);
    const auto end = std::find(input.begin(), input.end(), 0);
    const auto lines = static_cast<std::size_t>(end - input.begin());
    FuzzInput device(input.subspan(std::min(lines + 1, size)));
    const MemoryFile in(input.first(lines));
    const MemoryFile out({});
    const cli::Interrupt interrupt;
    cli::Output output(out.descriptor(), interrupt);
    ClockedServices host(interrupt);
    cli::Options options;
    options.details = size % 2 == 1;
    cli::JsonHostSession(options, in.descriptor(), output, host, interrupt,
                         [&](Host& services, GpsControlEvents& events) {
                             return ControlFactory::make(
                                 services, events, std::make_unique<FuzzPort>(host.clock, device),
                                 nullptr);
                         })
        .run();
    requireJsonLines(out.text());
    return 0;
}
