// Small helpers shared by the benchmark files: registration with plain names and
// per-operation counters.
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>

namespace bench {

/// Registers `body(state)` under `name`; returns the benchmark for further settings.
/// Figures are CPU time: the machine is shared, and CPU time is what other processes disturb least.
template <class Body>
benchmark::internal::Benchmark* registerBenchmark(std::string const& name, Body body) {
    return benchmark::RegisterBenchmark(name.c_str(), std::move(body));
}

/// Publishes "sec_per_op": CPU seconds of one iteration divided by `operationsPerIteration`.
inline void reportTimePerOperation(benchmark::State& state, double operationsPerIteration) {
    state.counters["sec_per_op"] = benchmark::Counter(
        operationsPerIteration, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

}  // namespace bench
