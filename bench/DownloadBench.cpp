// The whole download of so many records through a pty, by the control, beside a bare exchange: two
// programs that only read and write the same bytes in the same turns.
//
//     download_bench [TYPE RECORDS [REPETITIONS]]     D108 or D301; the usual set without arguments
//     download_bench paced [TYPE RECORDS]             the same at 9600 baud, beside the bytes' time
//
// Both sides of each run are processes. The repetitions of control and bare exchange alternate, so
// that whatever else the machine does meets both; medians are reported.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Allocations.h"
#include "BareSide.h"
#include "Exchange.h"
#include "PtyDevice.h"
#include "marlune/GpsControl.h"
#include "marlune/SystemHost.h"

namespace marlune::bench {
namespace {

constexpr const char* kProtocols = "P000 L001 A010 A100 D108 A300 D301";

// Counts what comes, and notes the heap's state around the records.
class CountingEvents : public GpsControlEvents {
public:
    void StartDownload(const std::string& /*type*/, std::int16_t /*count*/,
                       const std::string& /*header*/) override {
        records = 0;
        before_ = heap().allocations;
    }
    void WayptData(std::int16_t /*number*/, const std::string& /*line*/,
                   const std::string& /*sens*/) override {
        ++records;
    }
    void TrackData(std::int16_t /*number*/, const std::string& /*line*/,
                   const std::string& /*sens*/) override {
        ++records;
    }
    void EndDownload(const std::string& /*type*/) override {
        allocations = heap().allocations - before_;
    }

    std::uint32_t records = 0;
    std::uint64_t allocations = 0;

private:
    std::uint64_t before_ = 0;
};

// A control that is connected to a device of its own.
class ControlSide {
public:
    ControlSide(const std::string& type, std::uint32_t records, std::uint32_t baud)
        : device_({[] { return Exchange::handshake(kProtocols); },
                   [=] { return Exchange::download(type, records); }, baud}),
          control_(host_, events_),
          waypoints_(type.starts_with("D1")),
          records_(records) {
        host_.bindPort(1, device_.path());
        control_.setNumPort(numPort::Comm1);
        if (!control_.gpsConnect()) {
            throw std::runtime_error("not connected");
        }
        device_.awaitDownloads(0);
    }

    void run() {
        waypoints_ ? control_.getWaypts() : control_.getTracks();
        if (events_.records != records_) {
            throw std::runtime_error("records were lost");
        }
    }
    void settle() { device_.awaitDownloads(++runs_); }

    [[nodiscard]] double allocationsPerRecord() const {
        return static_cast<double>(events_.allocations) / records_;
    }
    [[nodiscard]] const PtyDevice& device() const { return device_; }

private:
    PtyDevice device_;
    SystemHost host_;
    CountingEvents events_;
    GpsControl control_;
    bool waypoints_;
    std::uint32_t records_;
    std::uint32_t runs_ = 0;
};

double ownProcessorSeconds() {
    timespec used{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) + 1e-9 * static_cast<double>(used.tv_nsec);
}

struct Cost {
    double seconds;
    double host;    // processor seconds of the host's process
    double device;  // and of the device's
};

template <class Side>
Cost costOf(Side& side) {
    const double device = side.device().processorSeconds();
    const double host = ownProcessorSeconds();
    const auto start = std::chrono::steady_clock::now();
    side.run();
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    const double hostUsed = ownProcessorSeconds() - host;
    side.settle();
    return {seconds.count(), hostUsed, side.device().processorSeconds() - device};
}

using Part = double (*)(const Cost&);

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double median(const std::vector<Cost>& costs, Part part) {
    std::vector<double> values;
    std::transform(costs.begin(), costs.end(), std::back_inserter(values), part);
    return median(std::move(values));
}

// Of neighbouring runs, which met the same machine.
double medianRatio(const std::vector<Cost>& control, const std::vector<Cost>& bare, Part part) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < control.size(); ++i) {
        ratios.push_back(part(control[i]) / part(bare[i]));
    }
    return median(std::move(ratios));
}

void report(const char* name, const std::vector<Cost>& costs, std::uint32_t records) {
    const double micro = 1e6 / records;
    const double best = std::min_element(costs.begin(), costs.end(), [](auto& a, auto& b) {
                            return a.seconds < b.seconds;
                        })->seconds;
    std::printf("  %-8s %9.2f %9.2f %9.2f %9.2f\n", name,
                micro * median(costs, [](const Cost& cost) { return cost.seconds; }), micro * best,
                micro * median(costs, [](const Cost& cost) { return cost.host; }),
                micro * median(costs, [](const Cost& cost) { return cost.device; }));
}

void compare(const std::string& type, std::uint32_t records, int repetitions) {
    ControlSide control(type, records, 0);
    costOf(control);
    const double peakMegabytes = static_cast<double>(peakResidentBytes()) / 1e6;
    BareSide bare(type, records);
    costOf(bare);
    std::vector<Cost> controlCosts;
    std::vector<Cost> bareCosts;
    for (int i = 0; i < repetitions; ++i) {
        bareCosts.push_back(costOf(bare));
        controlCosts.push_back(costOf(control));
    }
    std::printf("%s, %u records, %d repetitions; microseconds per record\n", type.c_str(), records,
                repetitions);
    std::printf("  %-8s %9s %9s %9s %9s\n", "", "median", "best", "host cpu", "dev. cpu");
    report("control", controlCosts, records);
    report("bare", bareCosts, records);
    const auto ratio = [&](Part part) { return medianRatio(controlCosts, bareCosts, part); };
    std::printf("  control / bare: time %.3f, processor time of the host %.3f, of both ends %.3f\n",
                ratio([](const Cost& cost) { return cost.seconds; }),
                ratio([](const Cost& cost) { return cost.host; }),
                ratio([](const Cost& cost) { return cost.host + cost.device; }));
    std::printf("  allocations per record %.2f, peak memory of the process %.1f MB\n\n",
                control.allocationsPerRecord(), peakMegabytes);
    std::fflush(stdout);
}

void pace(const std::string& type, std::uint32_t records) {
    constexpr std::uint32_t kBaud = 9600;
    ControlSide control(type, records, kBaud);
    const double seconds = costOf(control).seconds;
    const double needed =
        10.0 * static_cast<double>(Exchange::download(type, records).bytes()) / kBaud;
    std::printf("%s, %u records at %u baud: %.3f s, the bytes need %.3f s (%+.2f %%)\n",
                type.c_str(), records, kBaud, seconds, needed, 100 * (seconds / needed - 1));
}

void run(const std::vector<std::string>& arguments) {
    const auto number = [&](std::size_t at, unsigned long otherwise) {
        return at < arguments.size() ? std::stoul(arguments[at]) : otherwise;
    };
    if (!arguments.empty() && arguments[0] == "paced") {
        pace(arguments.size() > 1 ? arguments[1] : "D108",
             static_cast<std::uint32_t>(number(2, 200)));
        return;
    }
    if (!arguments.empty()) {
        const auto records = static_cast<std::uint32_t>(number(1, 10000));
        // Short runs are repeated more often.
        const std::uint32_t usual = std::clamp(200000U / records, 5U, 101U);
        compare(arguments[0], records, static_cast<int>(number(2, usual)));
    }
}

// Each case in a process of its own: the peak memory is then its own, too.
int runUsualSet(const std::string& program) {
    for (const char* const each : {"D108 1000", "D108 10000", "D108 32767", "D301 1000",
                                   "D301 10000", "D301 32767", "paced"}) {
        if (std::system((program + " " + each).c_str()) != 0) {
            return 1;
        }
    }
    return 0;
}

}  // namespace
}  // namespace marlune::bench

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.empty()) {
        return marlune::bench::runUsualSet(argv[0]);
    }
    try {
        marlune::bench::run(arguments);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "download_bench: %s\n", error.what());
        return 1;
    }
}
