// The listener through a pty that is always full: sentences a second, and the memory that it takes
// over ten million of them.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <thread>

#include "marlune/GpsControl.h"
#include "marlune/SystemHost.h"
#include "support/Pty.h"

namespace marlune {
namespace {

class StoppingListener : public GpsControlEvents {
public:
    void PhraseNMEA(const std::string& /*sentence*/) override {
        if (++heard == wanted) {
            control->StopNMEA();
        }
    }

    GpsControl* control = nullptr;
    std::int64_t wanted = 0;
    std::int64_t heard = 0;
};

class QuietHost : public SystemHost {
public:
    void messageBox(const std::string& /*text*/, BoxIcon /*icon*/) override {}
};

// Fills the line until it is told to end.
class TalkingDevice {
public:
    explicit TalkingDevice(Pty& pty) : thread_([this, &pty] { talk(pty); }) {}
    TalkingDevice(const TalkingDevice&) = delete;
    TalkingDevice& operator=(const TalkingDevice&) = delete;
    ~TalkingDevice() {
        ends_ = true;
        thread_.join();
    }

private:
    void talk(Pty& pty) {
        std::string text;
        while (text.size() < 4096) {
            text += "$GPGGA,123519.00,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
        }
        const std::span bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
        while (!ends_) {
            (void)pty.write(bytes);
        }
    }

    std::atomic<bool> ends_ = false;
    std::thread thread_;
};

long peakKilobytes() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// One iteration: the line is hung up at its end.
void listen(benchmark::State& state) {
    Pty pty;
    QuietHost host;
    host.bindPort(1, pty.slavePath());
    host.setDocumentsFolder("/nonexistent");
    StoppingListener listener;
    GpsControl control(host, listener);
    control.setNumPort(numPort::Comm1);
    listener.control = &control;
    listener.wanted = state.range(0);
    const long before = peakKilobytes();
    for ([[maybe_unused]] const auto each : state) {
        const TalkingDevice device(pty);
        const auto start = std::chrono::steady_clock::now();
        control.StartNMEA("$GPGGA", 5);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(seconds.count());
        pty.hangUp();  // ends the device, which nobody hears any more
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["peak growth KiB"] = static_cast<double>(peakKilobytes() - before);
}
BENCHMARK(listen)
    ->Arg(1'000'000)
    ->Arg(10'000'000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace marlune
