// Many controls at once, each on a thread of its own and with a virtual receiver of its own: what
// all their downloads take together, beside as many bare exchanges one after the other.
//
//     many_bench [CONTROLS [RECORDS]]     200 controls and 1000 D108 records each without arguments
//
// The receivers are in a process of their own, so memory and processor time here are the controls'.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <barrier>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Allocations.h"
#include "BareSide.h"
#include "Samples.h"
#include "garmin/records/Waypoint.h"
#include "marlune/GpsControl.h"
#include "marlune/SystemHost.h"
#include "receivers/Families.h"
#include "receivers/PtyRunner.h"
#include "support/TempFolder.h"

namespace marlune::bench {
namespace {

constexpr const char* kProtocols = "P000 L001 A010 A100 D108 A300 D301";

std::string waypointLines(std::uint32_t records) {
    std::string text;
    for (std::uint32_t i = 0; i < records; ++i) {
        Waypoint waypoint;
        waypoint.GetAttributes("D108", sampleRecord("D108", i));
        text += waypoint.getIdent('.') + "\r\n";
    }
    return text;
}

double secondsOf(const timespec& time) {
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// The virtual receivers, in a process of their own until the end of this object.
class Receivers {
public:
    Receivers(std::size_t count, const std::string& dataFile) {
        std::array<int, 2> paths{};
        std::array<int, 2> end{};
        if (::pipe(paths.data()) != 0 || ::pipe(end.data()) != 0 || (process_ = ::fork()) < 0) {
            throw std::runtime_error("no process for the receivers");
        }
        if (process_ == 0) {
            ::close(end[1]);
            serve(count, dataFile, paths[1], end[0]);
        }
        ::close(paths[1]);
        ::close(end[0]);
        end_ = end[1];
        readPaths(paths[0]);
        if (paths_.size() != count) {
            throw std::runtime_error("the receivers did not come up");
        }
    }
    Receivers(const Receivers&) = delete;
    Receivers& operator=(const Receivers&) = delete;
    ~Receivers() {
        ::close(end_);
        ::waitpid(process_, nullptr, 0);
    }

    [[nodiscard]] const std::vector<std::string>& paths() const { return paths_; }

    [[nodiscard]] double processorSeconds() const {
        clockid_t clock{};
        timespec used{};
        ::clock_getcpuclockid(process_, &clock);
        ::clock_gettime(clock, &used);
        return secondsOf(used);
    }

private:
    [[noreturn]] static void serve(std::size_t count, const std::string& dataFile, int tell,
                                   int end) {
        receivers::ReceiverOptions options;
        options.tags = kProtocols;
        options.dataFile = dataFile;
        std::vector<std::unique_ptr<receivers::PtyRunner>> runners;
        for (std::size_t i = 0; i < count; ++i) {
            runners.push_back(std::make_unique<receivers::PtyRunner>(
                receivers::receiverFamily("GRM").make(options), receivers::PtyRunner::Options{}));
            runners.back()->start();
            const std::string line = runners.back()->path() + '\n';
            writeAll(tell, {reinterpret_cast<const std::uint8_t*>(line.data()), line.size()});
        }
        ::close(tell);
        char nothing = 0;
        (void)!::read(end, &nothing, 1);
        ::_exit(0);
    }

    void readPaths(int from) {
        std::string text;
        std::array<char, 4096> part{};
        for (ssize_t got = 0; (got = ::read(from, part.data(), part.size())) > 0;) {
            text.append(part.data(), static_cast<std::size_t>(got));
        }
        ::close(from);
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = text.find('\n', at);
            paths_.push_back(text.substr(at, end - at));
            at = end + 1;
        }
    }

    pid_t process_ = -1;
    int end_ = -1;
    std::vector<std::string> paths_;
};

class CountingEvents : public GpsControlEvents {
public:
    void WayptData(std::int16_t /*number*/, const std::string& /*line*/,
                   const std::string& /*sens*/) override {
        ++records;
    }
    std::uint32_t records = 0;
};

// What a thread does: connects, waits for the others, downloads. Answers how many records came.
std::uint32_t download(const std::string& device, std::barrier<>& connected) {
    SystemHost host;
    CountingEvents events;
    GpsControl control(host, events);
    host.bindPort(1, device);
    control.setNumPort(numPort::Comm1);
    const bool isConnected = control.gpsConnect();
    connected.arrive_and_wait();
    if (isConnected) {
        control.getWaypts();
    }
    return events.records;
}

double ownProcessorSeconds() {
    timespec used{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return secondsOf(used);
}

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double bareSeconds(std::uint32_t records) {
    constexpr std::size_t kRuns = 5;
    BareSide bare("D108", records);
    std::array<double, kRuns> seconds{};
    for (double& each : seconds) {
        const auto start = std::chrono::steady_clock::now();
        bare.run();
        each = secondsSince(start);
        bare.settle();
    }
    std::sort(seconds.begin(), seconds.end());
    return seconds[kRuns / 2];
}

// Three descriptors a control, and more than a thousand for the receivers.
void allowManyFiles() {
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

void run(std::uint32_t controls, std::uint32_t records) {
    allowManyFiles();
    const TempFolder folder;
    const Receivers receivers(controls, folder.write("waypoints.txt", waypointLines(records)));
    const double bare = controls * bareSeconds(records);

    std::barrier<> connected(controls + 1);
    std::vector<std::uint32_t> received(controls);
    std::vector<std::thread> threads;
    auto start = std::chrono::steady_clock::now();
    for (std::uint32_t i = 0; i < controls; ++i) {
        threads.emplace_back([&, i] { received[i] = download(receivers.paths()[i], connected); });
    }
    connected.arrive_and_wait();
    const double connecting = secondsSince(start);
    start = std::chrono::steady_clock::now();
    const double hostBefore = ownProcessorSeconds();
    const double deviceBefore = receivers.processorSeconds();
    for (std::thread& thread : threads) {
        thread.join();
    }
    const double seconds = secondsSince(start);
    const double host = ownProcessorSeconds() - hostBefore;
    const double device = receivers.processorSeconds() - deviceBefore;

    if (std::any_of(received.begin(), received.end(),
                    [&](std::uint32_t count) { return count != records; })) {
        throw std::runtime_error("records were lost");
    }
    const double micro = 1e6 / controls / records;
    const double megabytes = static_cast<double>(peakResidentBytes()) / 1e6;
    std::printf("%u controls on as many threads, %u D108 records each\n", controls, records);
    std::printf("  all connected in %.2f s\n", connecting);
    std::printf("  all downloaded in %.2f s; the bare exchanges one by one: %.2f s; ratio %.2f\n",
                seconds, bare, seconds / bare);
    std::printf("  processor time, microseconds per record: controls %.2f, receivers %.2f\n",
                micro * host, micro * device);
    std::printf("  peak memory of the controls' process %.1f MB, %.0f kB each\n", megabytes,
                1e3 * megabytes / controls);
}

}  // namespace
}  // namespace marlune::bench

int main(int argc, char** argv) {
    try {
        const auto number = [&](int at, unsigned otherwise) {
            return at < argc ? static_cast<unsigned>(std::stoul(argv[at])) : otherwise;
        };
        marlune::bench::run(number(1, 200), number(2, 1000));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "many_bench: %s\n", error.what());
        return 1;
    }
}
