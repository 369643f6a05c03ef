// Counts what a benchmark program takes from the heap: every operator new of the program, from any
// thread. Linking Allocations.cpp puts the counting in place.
#pragma once

#include <cstddef>
#include <cstdint>

namespace marlune::bench {

struct Heap {
    std::uint64_t allocations = 0;  // since the program began
    std::size_t inUse = 0;          // bytes, as the allocator rounds them
    std::size_t peak = 0;           // the most that was in use since the last restartPeak()
};

Heap heap();
void restartPeak();

// The most memory that the process had in the system's eyes, in bytes: code, stack and heap.
std::size_t peakResidentBytes();
// The same counts from now on. False where the system does not let it restart.
bool restartPeakResident();

}  // namespace marlune::bench
