// Each kind of Garmin record: decoded, and told as its text line, as a download does.
#include <benchmark/benchmark.h>

#include <array>
#include <string>

#include "Allocations.h"
#include "Samples.h"
#include "garmin/records/PvtData.h"
#include "garmin/records/Route.h"
#include "garmin/records/RteLink.h"
#include "garmin/records/Trace.h"
#include "garmin/records/TrkHeader.h"
#include "garmin/records/Waypoint.h"

namespace marlune::bench {
namespace {

constexpr std::uint32_t kRecords = 1000;

std::string lineOf(const Waypoint& record) {
    return record.getIdent('.');
}
std::string lineOf(const Trace& record) {
    return record.getIdent('.');
}
template <class OtherRecord>
std::string lineOf(const OtherRecord& record) {
    return record.getIdent();
}

std::vector<Record> samples(const std::string& type) {
    std::vector<Record> records;
    for (std::uint32_t i = 0; i < kRecords; ++i) {
        records.push_back(sampleRecord(type, i));
    }
    return records;
}

// Calls take with one record after the other.
template <class Take>
void measure(benchmark::State& state, const std::string& type, Take&& take) {
    const std::vector<Record> records = samples(type);
    const std::uint64_t before = heap().allocations;
    std::size_t next = 0;
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(take(records[next]));
        next = next + 1 == records.size() ? 0 : next + 1;
    }
    state.SetLabel(type);
    state.SetItemsProcessed(state.iterations());
    state.counters["allocations"] = benchmark::Counter(
        static_cast<double>(heap().allocations - before), benchmark::Counter::kAvgIterations);
}

template <class Kind>
void decode(benchmark::State& state, const std::string& type) {
    measure(state, type, [&](const Record& data) {
        Kind record;
        record.GetAttributes(type, data);
        return lineOf(record);
    });
}

constexpr std::array kWaypoints = {"D100", "D101", "D102", "D103", "D104", "D105", "D106", "D107",
                                   "D108", "D109", "D110", "D150", "D151", "D152", "D154", "D155"};
constexpr std::array kPoints = {"D300", "D301", "D302", "D303", "D304"};
constexpr std::array kTrackHeaders = {"D310", "D311", "D312"};
constexpr std::array kRoutes = {"D200", "D201", "D202"};

void waypoint(benchmark::State& state) {
    decode<Waypoint>(state, kWaypoints.at(static_cast<std::size_t>(state.range(0))));
}
void trackPoint(benchmark::State& state) {
    decode<Trace>(state, kPoints.at(static_cast<std::size_t>(state.range(0))));
}
void trackHeader(benchmark::State& state) {
    decode<TrkHeader>(state, kTrackHeaders.at(static_cast<std::size_t>(state.range(0))));
}
void routeHeader(benchmark::State& state) {
    decode<Route>(state, kRoutes.at(static_cast<std::size_t>(state.range(0))));
}
void routeLink(benchmark::State& state) {
    decode<RteLink>(state, "D210");
}
void fix(benchmark::State& state) {
    DebugTrace trace("");
    PvtData pvt;
    measure(state, "D800", [&](const Record& data) {
        pvt.GetAttributes(data, 0, trace, '.');
        return pvt.getIdent('.');
    });
}

BENCHMARK(waypoint)->DenseRange(0, kWaypoints.size() - 1);
BENCHMARK(trackPoint)->DenseRange(0, kPoints.size() - 1);
BENCHMARK(trackHeader)->DenseRange(0, kTrackHeaders.size() - 1);
BENCHMARK(routeHeader)->DenseRange(0, kRoutes.size() - 1);
BENCHMARK(routeLink);
BENCHMARK(fix);

}  // namespace
}  // namespace marlune::bench
