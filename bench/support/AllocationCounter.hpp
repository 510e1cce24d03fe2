// Heap allocations, counted per thread by the benchmark binary's replacement of
// the global operator new (which the shared libraries use too).
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>

namespace bench {

/// Calls of any global operator new made so far by this thread.
std::uint64_t allocationCount() noexcept;

/// Bytes this thread holds through global operator new now (as malloc_usable_size counts them):
/// what it allocated minus what it freed. Negative after freeing what other threads allocated;
/// the difference of two readings is exact for work done on this thread in between.
std::int64_t liveBytes() noexcept;
/// The most liveBytes() has been since the last resetPeakBytes().
std::int64_t peakBytes() noexcept;
/// Starts a new peak from liveBytes().
void resetPeakBytes() noexcept;

/// Counts the allocations made by its thread between its construction and `report`,
/// and publishes them as the counter "allocs_per_op": allocations per iteration
/// divided by `operationsPerIteration`. On a multi-threaded benchmark each thread
/// has its own meter; the library sums the counters and the iterations of all threads.
class AllocationMeter {
public:
    AllocationMeter() noexcept : start_(allocationCount()) {}

    void report(benchmark::State& state, double operationsPerIteration = 1.0) const;

private:
    std::uint64_t start_;
};

}  // namespace bench
