// Work on several threads with results identical to one thread: each index is
// taken once, by one thread, and its work touches only what that index owns.
#pragma once

#include <cstddef>
#include <refpage/support/FunctionRef.hpp>

namespace refpage {

/// The number of threads `jobs` asks for: itself when nonzero, else the number of cores (at least 1).
unsigned threadCount(unsigned jobs) noexcept;

/// Calls `work(i)` for every i in [0, count) on up to `jobs` threads (0: one per core).
/// Each index is taken once; `work` must only touch what index i owns. Returns when all are
/// done; the first exception a call throws is rethrown here after the others finish.
void forEachIndex(std::size_t count, unsigned jobs, FunctionRef<void(std::size_t)> work);

}  // namespace refpage
