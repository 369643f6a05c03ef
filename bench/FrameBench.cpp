// One Garmin frame, built and taken apart: an acknowledgement, a waypoint, and the longest packet
// with every byte stuffed.
#include <benchmark/benchmark.h>

#include <array>

#include "Samples.h"
#include "garmin/link/GpsPacket.h"

namespace marlune::bench {
namespace {

const Record& payload(std::int64_t kind) {
    static const std::array<Record, 3> kPayloads = {Record{35, 0}, sampleRecord("D108", 4711),
                                                    Record(255, kDle)};
    return kPayloads.at(static_cast<std::size_t>(kind));
}

void build(benchmark::State& state) {
    const Record& data = payload(state.range(0));
    GpsPacket packet;
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(packet.Build(35, data));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data.size()));
}

void parse(benchmark::State& state) {
    const Record& data = payload(state.range(0));
    const Record frame = GpsPacket().Build(35, data);
    while (state.KeepRunning()) {
        GpsPacket packet;
        benchmark::DoNotOptimize(packet.Parse(frame));
        benchmark::DoNotOptimize(packet.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(data.size()));
}

BENCHMARK(build)->ArgName("acknowledge=0,D108=1,stuffed=2")->DenseRange(0, 2);
BENCHMARK(parse)->ArgName("acknowledge=0,D108=1,stuffed=2")->DenseRange(0, 2);

}  // namespace
}  // namespace marlune::bench
