// Replaces every form of the global operator new and delete with malloc and
// free plus counters of calls and of bytes held (now and at the peak). Each
// thread counts its own, in thread-local counters: exact, unshared, and on a
// benchmark's one thread the same figures as process-wide counters.
#include "support/AllocationCounter.hpp"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

/// Calls of operator new made by this thread; the mutable state the replacement needs,
/// since operator new has nowhere else to keep it. Trivial, so reached without a guard.
thread_local std::uint64_t allocations = 0;
/// Bytes allocated minus bytes freed by this thread (a block freed by another thread counts there).
thread_local std::int64_t live = 0;
thread_local std::int64_t peak = 0;  ///< most of `live` since the last reset

void* counted(void* memory) {
    live += static_cast<std::int64_t>(malloc_usable_size(memory));
    peak = std::max(peak, live);
    return memory;
}

void release(void* memory) noexcept {
    if (memory == nullptr) return;
    live -= static_cast<std::int64_t>(malloc_usable_size(memory));
    std::free(memory);
}

void* countedAllocate(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return counted(memory);
    }
    throw std::bad_alloc();
}

void* countedAllocateAligned(std::size_t size, std::align_val_t alignment) {
    ++allocations;
    std::size_t const align = static_cast<std::size_t>(alignment);
    std::size_t const rounded = (size + align - 1) / align * align;
    if (void* memory = std::aligned_alloc(align, rounded == 0 ? align : rounded)) {
        return counted(memory);
    }
    throw std::bad_alloc();
}

}  // namespace

namespace bench {

std::uint64_t allocationCount() noexcept { return allocations; }
std::int64_t liveBytes() noexcept { return live; }
std::int64_t peakBytes() noexcept { return peak; }
void resetPeakBytes() noexcept { peak = live; }

void AllocationMeter::report(benchmark::State& state, double operationsPerIteration) const {
    double const counted = static_cast<double>(allocationCount() - start_);
    state.counters["allocs_per_op"] =
        benchmark::Counter(counted / operationsPerIteration, benchmark::Counter::kAvgIterations);
}

}  // namespace bench

void* operator new(std::size_t size) { return countedAllocate(size); }
void* operator new[](std::size_t size) { return countedAllocate(size); }
void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    try {
        return countedAllocate(size);
    } catch (std::bad_alloc const&) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
    return operator new(size, std::nothrow);
}
void* operator new(std::size_t size, std::align_val_t alignment) { return countedAllocateAligned(size, alignment); }
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return countedAllocateAligned(size, alignment);
}

void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { release(memory); }
void operator delete(void* memory, std::nothrow_t const&) noexcept { release(memory); }
void operator delete[](void* memory, std::nothrow_t const&) noexcept { release(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { release(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { release(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { release(memory); }
