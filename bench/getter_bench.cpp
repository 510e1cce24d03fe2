// Native getters and property getters on a filled cache, one call per iteration,
// against the floor: an out-of-line call across a shared library returning a stored pointer.
#include "support/AllocationCounter.hpp"
#include "support/Corpus.hpp"
#include "support/Registration.hpp"
#include "support/StoredPointer.hpp"

#include <algorithm>

namespace {

using reference::property::RefItem;

/// The corpus page with the most syntax groups, inputs and see-also links (every getter has data).
RefItem const& richestPage() {
    static RefItem const page = [] {
        auto const& pages = bench::corpus();
        auto const richness = [](bench::CorpusPage const& entry) {
            return entry.page.getSyntaxGroups().size() + entry.page.getInputGroups().size() +
                   entry.page.getSeeAlsoInfo().size() + entry.page.getRefEntities().size();
        };
        auto const best = std::max_element(pages.begin(), pages.end(), [&](auto const& a, auto const& b) {
            return richness(a) < richness(b);
        });
        return best == pages.end() ? RefItem() : best->page.copy();
    }();
    return page;
}

using reference::property::SyntaxGroup;

/// Calls `get(record)` once per iteration after one warming call that fills any cache.
template <class Record, class Get>
void callRepeatedly(benchmark::State& state, Record const& record, Get get) {
    benchmark::DoNotOptimize(get(record));
    bench::AllocationMeter const meter;
    for (auto _ : state) {
        benchmark::DoNotOptimize(get(record));
    }
    meter.report(state);
}

/// A getter of the page itself.
template <class Get>
void registerGetter(char const* name, Get get) {
    bench::registerBenchmark(std::string("getter/") + name, [get](benchmark::State& state) {
        callRepeatedly(state, richestPage(), get);
    });
}

/// A getter of the page's first syntax group.
template <class Get>
void registerGroupGetter(char const* name, Get get) {
    bench::registerBenchmark(std::string("getter/") + name, [get](benchmark::State& state) {
        auto const& groups = richestPage().getSyntaxGroups();
        if (groups.empty()) {
            state.SkipWithError("no corpus page with syntax groups");
            return;
        }
        callRepeatedly(state, groups.front(), get);
    });
}

int const registered = [] {
    bench::registerBenchmark("getter/stored_pointer_floor", [](benchmark::State& state) {
        int const target = 0;
        bench::PointerHolder const holder{&target};
        bench::AllocationMeter const meter;
        for (auto _ : state) {
            benchmark::DoNotOptimize(bench::storedPointer(holder));
        }
        meter.report(state);
    });
    registerGetter("native_string", [](RefItem const& page) { return &page.getPurpose(); });
    registerGetter("native_enumeration", [](RefItem const& page) { return page.getDeprecationStatus(); });
    registerGetter("native_object_vector", [](RefItem const& page) { return &page.getSyntaxGroups(); });
    registerGetter("property_string", [](RefItem const& page) { return &page.getPurposeProperty(); });
    registerGetter("property_enumeration", [](RefItem const& page) { return page.getDeprecationStatusProperty(); });
    registerGetter("property_object_array", [](RefItem const& page) { return page.getSyntaxGroupsProperty(); });
    registerGroupGetter("property_string_list", [](SyntaxGroup const& group) { return group.getSyntaxesProperty(); });
    registerGroupGetter("property_group_enumeration",
                        [](SyntaxGroup const& group) { return group.getSyntaxTypeProperty(); });
    return 0;
}();

}  // namespace
