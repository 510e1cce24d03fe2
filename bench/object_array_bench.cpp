// An object-array property set followed by the first get, for N records: time and
// allocations per element, and how time per element grows with N. Two shapes: a
// page's examples (three texts each) and a group's inputs (texts, a string list and
// an enumeration, each with its own cache). The owner keeps its previous array
// between iterations, so each set also releases the last one, as a host
// reassigning a property would.
#include "support/AllocationCounter.hpp"
#include "support/HostRecords.hpp"
#include "support/Registration.hpp"

#include <reference/glue/Classes.hpp>
#include <reference/property/InputGroup.hpp>
#include <reference/property/RefItem.hpp>

#include <algorithm>

namespace {

using bench::HostArrayPtr;
using reference::property::InputGroup;
using reference::property::RefItem;

/// Sets `prepared` on `owner` through `set`, then reads it back through `get`, once per iteration.
template <class Owner>
void setThenGet(benchmark::State& state, HostArrayPtr const& prepared, void (Owner::*set)(oxArray_tag const*),
                oxArray_tag const* (Owner::*get)() const) {
    auto const count = static_cast<std::size_t>(state.range(0));
    Owner owner;
    bench::AllocationMeter const meter;
    for (auto _ : state) {
        (owner.*set)(prepared.get());
        benchmark::DoNotOptimize((owner.*get)());
    }
    double const elements = static_cast<double>(std::max<std::size_t>(count, 1));
    meter.report(state, elements);
    bench::reportTimePerOperation(state, elements);
    state.counters["elements"] = static_cast<double>(count);
}

void setThenGetExamples(benchmark::State& state) {
    reference::glue::registerClasses();
    HostArrayPtr const prepared =
        bench::hostObjectArray(bench::syntheticExamples(static_cast<std::size_t>(state.range(0))));
    setThenGet(state, prepared, &RefItem::setExamplesProperty, &RefItem::getExamplesProperty);
}

void setThenGetInputs(benchmark::State& state) {
    reference::glue::registerClasses();
    HostArrayPtr const prepared =
        bench::hostObjectArray(bench::syntheticInputs(static_cast<std::size_t>(state.range(0))));
    setThenGet(state, prepared, &InputGroup::setInputsProperty, &InputGroup::getInputsProperty);
}

int const registered = [] {
    for (auto* registeredBenchmark :
         {bench::registerBenchmark("object_array/set_then_get/Example", setThenGetExamples),
          bench::registerBenchmark("object_array/set_then_get/Input", setThenGetInputs)}) {
        for (long const count : {0L, 1L, 10L, 100L, 1000L, 10000L}) {
            registeredBenchmark->Arg(count);
        }
    }
    return 0;
}();

}  // namespace
