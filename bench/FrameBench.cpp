// One Garmin frame, built and taken apart: an acknowledgement, a waypoint, and the longest packet
// with every byte stuffed.
#include <benchmark/benchmark.h>

#include <array>

#include "Samples.h"
#include "garmin/link/GpsPacket.h"

namespace marlune::bench {
namespace {

Record payload(int kind) {
    switch (kind) {
        case 0:
            return {35, 0};
        case 1:
            return sampleRecord("D108", 4711);
        default:
            return Record(255, kDle);
    }
}

void build(benchmark::State& state) {
    const Record data = payload(static_cast<int>(state.range(0)));
    GpsPacket packet;
    for (auto _ : state) {
        benchmark::DoNotOptimize(packet.Build(35, data));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data.size()));
}

void parse(benchmark::State& state) {
    const Record data = payload(static_cast<int>(state.range(0)));
    const Record frame = GpsPacket().Build(35, data);
    for (auto _ : state) {
        GpsPacket packet;
        benchmark::DoNotOptimize(packet.Parse(frame));
        benchmark::DoNotOptimize(packet.takeData());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data.size()));
}

BENCHMARK(build)->ArgName("acknowledge=0,D108=1,stuffed=2")->DenseRange(0, 2);
BENCHMARK(parse)->ArgName("acknowledge=0,D108=1,stuffed=2")->DenseRange(0, 2);

}  // namespace
}  // namespace marlune::bench
