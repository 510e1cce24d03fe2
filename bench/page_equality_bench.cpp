// operator== of whole, equal corpus pages (so every field is visited) against a
// defaulted member-wise comparison of the same data, the block-compare floor and,
// when available, the protocol-buffer differencer.
#include "support/AllocationCounter.hpp"
#include "support/Corpus.hpp"
#include "support/MirrorPage.hpp"
#include "support/Registration.hpp"

#ifdef REFPROP_BENCH_HAVE_PROTOBUF
#include "proto/ProtoPage.hpp"

#include <google/protobuf/util/message_differencer.h>
#endif

#include <vector>

namespace {

using reference::property::RefItem;

/// Compares each left value with the right value at the same index; one iteration is the whole corpus.
template <class Value, class Equal>
void compareAll(benchmark::State& state, std::vector<Value> const& left, std::vector<Value> const& right,
                Equal equal) {
    bench::AllocationMeter const meter;
    bool allEqual = true;
    for (auto _ : state) {
        for (std::size_t i = 0; i < left.size(); ++i) {
            bool const same = equal(left[i], right[i]);
            benchmark::DoNotOptimize(same);
            allEqual = allEqual && same;
        }
    }
    if (!allEqual) {
        state.SkipWithError("pages compared unequal");
    }
    meter.report(state, static_cast<double>(left.size()));
    bench::reportTimePerOperation(state, static_cast<double>(left.size()));
}

template <class Value>
std::vector<Value> mapCorpus(Value (*convert)(RefItem const&), std::vector<RefItem> const& pages) {
    std::vector<Value> result;
    result.reserve(pages.size());
    for (auto const& page : pages) {
        result.push_back(convert(page));
    }
    return result;
}

std::vector<RefItem> corpusPages() {
    std::vector<RefItem> pages;
    for (auto const& entry : bench::corpus()) {
        pages.push_back(entry.page.copy());
    }
    return pages;
}

int const registered = [] {
    bench::registerBenchmark("page_equal/library", [](benchmark::State& state) {
        std::vector<RefItem> const left = corpusPages();
        std::vector<RefItem> const right = bench::corpusCopies();
        compareAll(state, left, right, [](RefItem const& a, RefItem const& b) { return a == b; });
    });
    bench::registerBenchmark("page_equal/defaulted_mirror", [](benchmark::State& state) {
        auto const left = mapCorpus(&bench::mirrorOf, corpusPages());
        auto const right = mapCorpus(&bench::mirrorOf, bench::corpusCopies());
        compareAll(state, left, right, [](auto const& a, auto const& b) { return a == b; });
    });
    bench::registerBenchmark("page_equal/block_mirror_floor", [](benchmark::State& state) {
        auto const left = mapCorpus(&bench::blockMirrorOf, corpusPages());
        auto const right = mapCorpus(&bench::blockMirrorOf, bench::corpusCopies());
        compareAll(state, left, right, [](auto const& a, auto const& b) { return a == b; });
    });
#ifdef REFPROP_BENCH_HAVE_PROTOBUF
    bench::registerBenchmark("page_equal/protobuf_differencer", [](benchmark::State& state) {
        auto const left = mapCorpus(&bench::protoOf, corpusPages());
        auto const right = mapCorpus(&bench::protoOf, bench::corpusCopies());
        compareAll(state, left, right, [](auto const& a, auto const& b) {
            return google::protobuf::util::MessageDifferencer::Equals(a, b);
        });
    });
#endif
    return 0;
}();

}  // namespace
