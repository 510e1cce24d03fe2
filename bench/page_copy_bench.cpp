// copy() of whole corpus pages against the records' own member-wise copy
// constructor and, when available, a protocol-buffer CopyFrom into a new message.
// Each copy is destroyed inside the timed loop, as a caller's would be.
#include "support/AllocationCounter.hpp"
#include "support/Corpus.hpp"
#include "support/Registration.hpp"

#ifdef REFPROP_BENCH_HAVE_PROTOBUF
#include "proto/ProtoPage.hpp"
#endif

#include <vector>

namespace {

using reference::property::RefItem;

/// Makes and drops one copy of every source; one iteration is the whole corpus.
template <class Value, class Copy>
void copyAll(benchmark::State& state, std::vector<Value> const& sources, Copy makeCopy) {
    bench::AllocationMeter const meter;
    for (auto _ : state) {
        for (auto const& source : sources) {
            auto copied = makeCopy(source);
            benchmark::DoNotOptimize(copied);
            benchmark::ClobberMemory();
        }
    }
    meter.report(state, static_cast<double>(sources.size()));
    bench::reportTimePerOperation(state, static_cast<double>(sources.size()));
}

std::vector<RefItem> const& pages() {
    static std::vector<RefItem> const loaded = bench::corpusCopies();
    return loaded;
}

int const registered = [] {
    bench::registerBenchmark("page_copy/library_copy", [](benchmark::State& state) {
        copyAll(state, pages(), [](RefItem const& page) { return page.copy(); });
    });
    bench::registerBenchmark("page_copy/copy_constructor", [](benchmark::State& state) {
        copyAll(state, pages(), [](RefItem const& page) { return RefItem(page); });
    });
#ifdef REFPROP_BENCH_HAVE_PROTOBUF
    bench::registerBenchmark("page_copy/protobuf_copyfrom", [](benchmark::State& state) {
        std::vector<refprop::bench::RefItem> messages;
        for (auto const& page : pages()) {
            messages.push_back(bench::protoOf(page));
        }
        copyAll(state, messages, [](refprop::bench::RefItem const& source) {
            refprop::bench::RefItem message;
            message.CopyFrom(source);
            return message;
        });
    });
#endif
    return 0;
}();

}  // namespace
