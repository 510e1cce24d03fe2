// A whole page through the host protocol, per corpus page: every property of a
// fresh page set from prepared host values through the class's property table,
// then every property read back through the host getters. Baseline: the
// member-wise copy constructor of the same page. The same round trip on one
// thread and on two, each thread on its own loaded pages: what the host's shared
// state (interned names, class registry, live counts) costs in scaling; the
// member-wise copy on one thread and two shows how far the machine itself scales.
#include "support/AllocationCounter.hpp"
#include "support/Corpus.hpp"
#include "support/MirrorPage.hpp"
#include "support/Registration.hpp"

#include <reference/glue/PropertyTable.hpp>
#include <refpage/format/Loader.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <mutex>
#include <variant>
#include <vector>

namespace {

using reference::glue::PropertyEntry;
using reference::glue::PropertyKind;
using reference::glue::PropertyTable;
using reference::property::HostArrayPtr;
using reference::property::RefItem;

/// The host value of one property, as the host would hold it before a set.
using PreparedValue = std::variant<std::u16string, bool, HostArrayPtr>;

/// Every property value of `source`, in table order, read through its host getters.
std::vector<PreparedValue> prepare(PropertyTable const& table, RefItem const& source) {
    std::vector<PreparedValue> values;
    for (PropertyEntry const& entry : table.entries) {
        switch (entry.kind) {
        case PropertyKind::String:
            values.emplace_back(entry.strings().get(&source));
            break;
        case PropertyKind::Bool:
            values.emplace_back(entry.flag().get(&source));
            break;
        default:
            values.emplace_back(HostArrayPtr(entry.arrays().get(&source)));
            break;
        }
    }
    return values;
}

/// Sets every property of `page` from `values`, then reads every one back.
void roundTrip(PropertyTable const& table, std::vector<PreparedValue> const& values, RefItem& page) {
    for (std::size_t i = 0; i < table.entries.size(); ++i) {
        PropertyEntry const& entry = table.entries[i];
        switch (entry.kind) {
        case PropertyKind::String:
            entry.strings().set(&page, &std::get<std::u16string>(values[i]));
            break;
        case PropertyKind::Bool:
            entry.flag().set(&page, std::get<bool>(values[i]));
            break;
        default:
            entry.arrays().set(&page, std::get<HostArrayPtr>(values[i]).get());
            break;
        }
    }
    for (PropertyEntry const& entry : table.entries) {
        switch (entry.kind) {
        case PropertyKind::String:
            benchmark::DoNotOptimize(&entry.strings().get(&page));
            break;
        case PropertyKind::Bool:
            benchmark::DoNotOptimize(entry.flag().get(&page));
            break;
        default:
            benchmark::DoNotOptimize(entry.arrays().get(&page));
            break;
        }
    }
}

/// The prepared values of every corpus page.
using PreparedPages = std::vector<std::vector<PreparedValue>>;

/// The timed loop of the round trip over every page of `prepared`, with its allocations per page.
void roundTripPages(benchmark::State& state, PreparedPages const& prepared) {
    PropertyTable const& table = reference::glue::tableOf<RefItem>();
    bench::AllocationMeter const meter;
    for (auto _ : state) {
        for (auto const& values : prepared) {
            RefItem page;
            roundTrip(table, values, page);
            benchmark::ClobberMemory();
        }
    }
    meter.report(state, static_cast<double>(prepared.size()));
}

void wholePageThroughHost(benchmark::State& state) {
    PropertyTable const& table = reference::glue::tableOf<RefItem>();
    PreparedPages prepared;
    for (auto const& entry : bench::corpus()) {
        prepared.push_back(prepare(table, entry.page));
    }
    roundTripPages(state, prepared);
    bench::reportTimePerOperation(state, static_cast<double>(prepared.size()));
}

void copyConstructPages(benchmark::State& state) {
    std::vector<RefItem> const pages = bench::corpusCopies();
    double strings = 0;
    double codeUnits = 0;
    for (auto const& page : pages) {
        bench::PageSize const size = bench::sizeOf(page);
        strings += static_cast<double>(size.strings);
        codeUnits += static_cast<double>(size.codeUnits);
    }
    double const count = static_cast<double>(std::max<std::size_t>(pages.size(), 1));
    state.counters["pages"] = static_cast<double>(pages.size());
    state.counters["strings_per_page"] = strings / count;
    state.counters["text_bytes_per_page"] = 2 * codeUnits / count;
    bench::AllocationMeter const meter;
    for (auto _ : state) {
        for (auto const& source : pages) {
            RefItem copied(source);
            benchmark::DoNotOptimize(copied);
            benchmark::ClobberMemory();
        }
    }
    meter.report(state, static_cast<double>(pages.size()));
    bench::reportTimePerOperation(state, static_cast<double>(pages.size()));
}

constexpr int mostThreads = 2;

/// What each thread works on: its own load of every corpus page's JSON, and the prepared values
/// of those pages. Not copies of one loaded page: a copy shares its elements' cached arrays
/// with the source, and threads taking references on them would share cache lines.
struct ThreadPages {
    std::vector<RefItem> pages;
    PreparedPages prepared;
};

/// Thread `thread`'s pages, made on first use, all threads' at once, before any thread's timed loop.
ThreadPages const& pagesForThread(int thread) {
    static std::array<ThreadPages, mostThreads> perThread;
    static std::once_flag made;
    std::call_once(made, [] {
        PropertyTable const& table = reference::glue::tableOf<RefItem>();
        for (ThreadPages& own : perThread) {
            for (auto const& entry : bench::corpus()) {
                refpage::LoadResult const loaded = refpage::loadPage(entry.json, entry.path);
                own.pages.push_back(refpage::nativePage(loaded.page.get()).copy());
                own.prepared.push_back(prepare(table, own.pages.back()));
            }
        }
    });
    return perThread.at(static_cast<std::size_t>(thread));
}

/// The round trip of wholePageThroughHost on each of the benchmark's threads, over that
/// thread's own pages. "items_per_second": pages per second of all threads together.
void wholePageOnThreads(benchmark::State& state) {
    PreparedPages const& prepared = pagesForThread(state.thread_index()).prepared;
    roundTripPages(state, prepared);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(prepared.size()));
}

/// The member-wise copy on each of the benchmark's threads, over that thread's own pages: how
/// far this machine scales a workload of malloc and copying alone, with no host call in it.
void copyConstructOnThreads(benchmark::State& state) {
    std::vector<RefItem> const& pages = pagesForThread(state.thread_index()).pages;
    for (auto _ : state) {
        for (auto const& source : pages) {
            RefItem copied(source);
            benchmark::DoNotOptimize(copied);
            benchmark::ClobberMemory();
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(pages.size()));
}

int const registered = [] {
    bench::registerBenchmark("host_protocol/set_and_get_every_property", wholePageThroughHost);
    bench::registerBenchmark("host_protocol/copy_constructor", copyConstructPages);
    // Wall-clock time: what a second thread buys is elapsed time, not CPU time.
    bench::registerBenchmark("host_protocol/set_and_get_on_threads", wholePageOnThreads)
        ->Threads(1)
        ->Threads(mostThreads)
        ->UseRealTime();
    bench::registerBenchmark("host_protocol/copy_constructor_on_threads", copyConstructOnThreads)
        ->Threads(1)
        ->Threads(mostThreads)
        ->UseRealTime();
    return 0;
}();

}  // namespace
