// Reading an upload file of so many lines into the control's collection: lines per second, the most
// heap in use beyond what was in use before, and the most memory of the whole process.
#include <benchmark/benchmark.h>

#include <string>

#include "Allocations.h"
#include "Samples.h"
#include "garmin/UploadFiles.h"
#include "marlune/SystemHost.h"
#include "support/TempFolder.h"

namespace marlune::bench {
namespace {

constexpr std::uint32_t kPointsPerRoute = 50;
constexpr std::uint32_t kPointsPerTrack = 1000;

std::string waypointLine(std::uint32_t number) {
    Waypoint waypoint;
    waypoint.GetAttributes("D108", sampleRecord("D108", number));
    return waypoint.getIdent('.') + "\r\n";
}

std::string trackLine(std::uint32_t number) {
    if (number % kPointsPerTrack == 0) {
        return "N;TRACK " + std::to_string(number / kPointsPerTrack) + "\r\n";
    }
    Trace point;
    point.GetAttributes("D301", sampleRecord("D301", number));
    return point.getIdent('.') + "\r\n";
}

std::string routeLine(std::uint32_t number) {
    const std::uint32_t route = number / kPointsPerRoute;
    return number % kPointsPerRoute == 0 ? "R;" + std::to_string(route % 256) + ";ROUTE\r\n"
                                         : waypointLine(number);
}

template <class Item>
using Reader = FileReading (*)(Host&, std::string_view, const UploadFormat&, std::vector<Item>&);

template <class Item>
void readFile(benchmark::State& state, Reader<Item> read, std::string (*line)(std::uint32_t)) {
    const auto lines = static_cast<std::uint32_t>(state.range(0));
    const TempFolder folder;
    std::string path;
    {
        std::string text;
        for (std::uint32_t i = 0; i < lines; ++i) {
            text += line(i);
        }
        path = folder.write("upload.txt", text);
        state.counters["fileMB"] = static_cast<double>(text.size()) / 1e6;
    }
    SystemHost host;
    const UploadFormat format = {"GRM", "D108", "", "A301", "D310", "."};
    std::size_t heapPeak = 0;
    while (state.KeepRunning()) {
        state.PauseTiming();
        std::vector<Item> items;
        const std::size_t before = heap().inUse;
        restartPeak();
        restartPeakResident();
        state.ResumeTiming();
        if (!read(host, path, format, items)) {
            state.SkipWithError("the file was not read");
        }
        state.PauseTiming();
        heapPeak = heap().peak - before;
        items = {};
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * lines);
    state.counters["heapMB"] = static_cast<double>(heapPeak) / 1e6;
    state.counters["processMB"] = static_cast<double>(peakResidentBytes()) / 1e6;
}

void waypoints(benchmark::State& state) {
    readFile<Waypoint>(state, readWaypointFile, waypointLine);
}
void routes(benchmark::State& state) {
    readFile<Route>(state, readRouteFile, routeLine);
}
void tracks(benchmark::State& state) {
    readFile<TrackItem>(state, readTrackFile, trackLine);
}

void sizes(benchmark::internal::Benchmark* run) {
    run->Arg(1000)->Arg(32767)->Arg(1000000)->Unit(benchmark::kMillisecond);
}
BENCHMARK(waypoints)->Apply(sizes);
BENCHMARK(routes)->Apply(sizes);
BENCHMARK(tracks)->Apply(sizes);

}  // namespace
}  // namespace marlune::bench
