// An object-array property set followed by the first get, for N records: time and
// allocations per element, and how time per element grows with N. The page keeps
// its previous array between iterations, so each set also releases the last one,
// as a host reassigning a property would.
#include "support/AllocationCounter.hpp"
#include "support/HostRecords.hpp"
#include "support/Registration.hpp"

#include <reference/glue/Classes.hpp>
#include <reference/property/RefItem.hpp>

#include <algorithm>

namespace {

using bench::HostArrayPtr;
using reference::property::RefItem;

void setThenGetExamples(benchmark::State& state) {
    reference::glue::registerClasses();
    auto const count = static_cast<std::size_t>(state.range(0));
    HostArrayPtr const prepared = bench::hostObjectArray(bench::syntheticExamples(count));
    RefItem page;
    bench::AllocationMeter const meter;
    for (auto _ : state) {
        page.setExamplesProperty(prepared.get());
        benchmark::DoNotOptimize(page.getExamplesProperty());
    }
    double const elements = static_cast<double>(std::max<std::size_t>(count, 1));
    meter.report(state, elements);
    bench::reportTimePerOperation(state, elements);
    state.counters["elements"] = static_cast<double>(count);
}

int const registered = [] {
    auto* registeredBenchmark = bench::registerBenchmark("object_array/set_then_get/Example", setThenGetExamples);
    for (long const count : {0L, 1L, 10L, 100L, 1000L, 10000L}) {
        registeredBenchmark->Arg(count);
    }
    return 0;
}();

}  // namespace
