// Sentences decoded and blocks cut, in memory.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>

#include "nmea/NmeaPacket.h"
#include "nmea/magellan/TrackSentence.h"
#include "nmea/magellan/WaypointSentence.h"
#include "nmea/mlr/BlockSplitter.h"

namespace marlune {
namespace {

std::string withoutLineEnd(std::string sentence) {
    sentence.resize(sentence.size() - 2);
    return sentence;
}

void magellanWaypoint(benchmark::State& state) {
    const std::string sentence = withoutLineEnd(
        signedSentence("$PMGNWPL,4807.038,N,01131.000,E,0000152,M,HOME,MY HOUSE,a*"));
    for ([[maybe_unused]] const auto each : state) {
        Waypoint waypoint;
        benchmark::DoNotOptimize(GetAttributes_MGN(waypoint, sentence));
        benchmark::DoNotOptimize(waypoint.getIdent('.'));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(magellanWaypoint);

void magellanTrackPoint(benchmark::State& state) {
    const std::string sentence = withoutLineEnd(
        signedSentence("$PMGNTRK,4807.038,N,01131.000,E,00152,M,123519.00,A,LOOP,150325*"));
    for ([[maybe_unused]] const auto each : state) {
        Trace point;
        benchmark::DoNotOptimize(GetAttributes_MGN(point, sentence, 39234));
        benchmark::DoNotOptimize(point.getIdent('.'));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(magellanTrackPoint);

// A megabyte of blocks of 20 records, arriving in pieces of the given length; then one block
// without an end, which must cost no more.
void splitBlocks(benchmark::State& state, bool withSeams) {
    std::string stream;
    while (stream.size() < (1U << 20U)) {
        stream += (withSeams ? "\r\n\x8Bhhhh\x14" : "hhhh\r\n") + std::string(320, 'x');
    }
    const auto piece = static_cast<std::size_t>(state.range(0));
    for ([[maybe_unused]] const auto each : state) {
        BlockSplitter splitter;
        for (std::size_t at = 0; at < stream.size(); at += piece) {
            const std::size_t length = std::min(piece, stream.size() - at);
            benchmark::DoNotOptimize(splitter.take({stream.data() + at, length}));
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(stream.size()));
}
BENCHMARK_CAPTURE(splitBlocks, blocks, true)->Arg(1)->Arg(64)->Arg(512)->Arg(1 << 20);
BENCHMARK_CAPTURE(splitBlocks, oneBlock, false)->Arg(1)->Arg(64)->Arg(512)->Arg(1 << 20);

}  // namespace
}  // namespace marlune
