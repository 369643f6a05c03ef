#include "Allocations.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <new>
#include <string>

namespace marlune::bench {
namespace {

std::atomic<std::uint64_t> allocations = 0;
std::atomic<std::size_t> inUse = 0;
std::atomic<std::size_t> peak = 0;

void* take(std::size_t size) {
    void* const memory = std::malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    allocations.fetch_add(1, std::memory_order_relaxed);
    const std::size_t usable = ::malloc_usable_size(memory);
    const std::size_t now = inUse.fetch_add(usable, std::memory_order_relaxed) + usable;
    if (now > peak.load(std::memory_order_relaxed)) {
        peak.store(now, std::memory_order_relaxed);
    }
    return memory;
}

void give(void* memory) {
    inUse.fetch_sub(::malloc_usable_size(memory), std::memory_order_relaxed);
    std::free(memory);
}

}  // namespace

Heap heap() {
    return {allocations, inUse, peak};
}

void restartPeak() {
    peak = inUse.load();
}

std::size_t peakResidentBytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) {
            return std::stoul(line.substr(6)) * 1024;
        }
    }
    return 0;
}

bool restartPeakResident() {
    // What was freed goes back to the system first.
    ::malloc_trim(0);
    std::ofstream control("/proc/self/clear_refs");
    control << "5" << std::flush;
    return control.good();
}

}  // namespace marlune::bench

void* operator new(std::size_t size) {
    return marlune::bench::take(size);
}
void operator delete(void* memory) noexcept {
    marlune::bench::give(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    marlune::bench::give(memory);
}
