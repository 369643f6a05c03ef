// Each kind of Garmin record: decoded, and told as its text line, as a download does.
#include <benchmark/benchmark.h>

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

std::string lineOf(Waypoint& record) {
    return record.getIdent('.');
}
std::string lineOf(Trace& record) {
    return record.getIdent('.');
}
template <class OtherRecord>
std::string lineOf(OtherRecord& record) {
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
    for (auto _ : state) {
        benchmark::DoNotOptimize(take(records[next]));
        next = next + 1 == records.size() ? 0 : next + 1;
    }
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

void decodeFix(benchmark::State& state, const std::string& type) {
    DebugTrace trace("");
    PvtData fix;
    measure(state, type, [&](const Record& data) {
        fix.GetAttributes(data, 0, trace, '.');
        return fix.getIdent('.');
    });
}

using Decode = void (*)(benchmark::State&, const std::string&);

void add(Decode decodeKind, std::initializer_list<const char*> types) {
    for (const std::string type : types) {
        benchmark::RegisterBenchmark(
            ("decodeAndLine/" + type).c_str(),
            [decodeKind, type](benchmark::State& state) { decodeKind(state, type); });
    }
}

}  // namespace
}  // namespace marlune::bench

int main(int argc, char** argv) {
    using namespace marlune;
    using namespace marlune::bench;
    add(decode<Waypoint>, {"D100", "D101", "D102", "D103", "D104", "D105", "D106", "D107", "D108",
                           "D109", "D110", "D150", "D151", "D152", "D154", "D155"});
    add(decode<Trace>, {"D300", "D301", "D302", "D303", "D304"});
    add(decode<TrkHeader>, {"D310", "D311", "D312"});
    add(decode<Route>, {"D200", "D201", "D202"});
    add(decode<RteLink>, {"D210"});
    add(decodeFix, {"D800"});
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
