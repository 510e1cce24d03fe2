// The doc set as a whole, over about 2,300 pages: a query against the lookup
// index against a query by scanning the pages (loading each and matching its
// lookups, as find did before the index); building the index against checking
// the same pages; checking on two threads against one. The pages are the *.json
// files under the folder REFPROP_BENCH_PAGES names, e.g. a generated doc set:
//   pagegen --seed 1 --pages 2300 --broken-links 0.05 -o DIR
// Without it the benchmarks are skipped.
#include "support/Registration.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <refpage/docset/DocSet.hpp>
#include <refpage/docset/LookupIndex.hpp>
#include <refpage/format/Check.hpp>
#include <refpage/docset/LoadSet.hpp>
#include <optional>
#include <utf8.h>
#include <string>
#include <vector>

namespace {

/// Queries a person would type: last components, prefixes, words of purposes, misses.
constexpr std::array<char const*, 8> queries{"sort", "pkg.", "mean", "array", "value of", "fft", "index", "zebra"};

/// The pages the benchmarks run on, in memory, read once.
std::vector<refpage::PageInput> const& pageSet() {
    static std::vector<refpage::PageInput> const inputs = [] {
        std::vector<refpage::PageInput> result;
        if (char const* folder = std::getenv("REFPROP_BENCH_PAGES")) {
            std::vector<std::filesystem::path> files;
            for (auto const& item : std::filesystem::recursive_directory_iterator(folder))
                if (item.path().extension() == ".json") files.push_back(item.path());
            std::sort(files.begin(), files.end());
            for (auto const& file : files) {
                std::string text;
                refpage::PageError error;
                if (refpage::readTextFile(file, text, error)) result.push_back(refpage::PageInput::memory(file.string(), std::move(text)));
            }
            return result;
        }
        return result;
    }();
    return inputs;
}

bool enoughPages(benchmark::State& state) {
    if (pageSet().size() >= 100) return true;
    state.SkipWithError("REFPROP_BENCH_PAGES names no folder of at least 100 pages");
    return false;
}

/// The lookup entries of the set, loaded once.
std::vector<refpage::LookupEntry> const& setEntries() {
    static std::vector<refpage::LookupEntry> const entries = refpage::lookupEntries(refpage::loadDocSet(pageSet(), 0, {}).set);
    return entries;
}

/// What `check` does over the set on `jobs` threads: every page's own check and summary, then the set's check.
std::size_t checkSet(unsigned jobs) {
    auto const& inputs = pageSet();
    std::vector<refpage::CheckReport> reports(inputs.size());
    std::vector<std::optional<refpage::PageSummary>> summaries(inputs.size());
    refpage::checkEach(inputs, jobs, {}, true, [&](std::size_t i, refpage::CheckReport&& report, refpage::LoadResult const* page) {
        summaries[i].reset();
        if (page != nullptr) summaries[i] = refpage::summarize(inputs[i].source, refpage::nativePage(page->page.get()));
        reports[i] = std::move(report);
    });
    std::vector<refpage::PageSummary> pages;
    for (auto& summary : summaries)
        if (summary) pages.push_back(std::move(*summary));
    return refpage::DocSet(std::move(pages)).check().findings.size();
}

int const registered = [] {
    bench::registerBenchmark("docset/query_index", [](benchmark::State& state) {
        if (!enoughPages(state)) return;
        auto const index = refpage::LookupIndex::inMemory(setEntries());
        std::size_t next = 0;
        for (auto _ : state) benchmark::DoNotOptimize(index.find(queries[next++ % queries.size()]));
        state.counters["pages"] = static_cast<double>(pageSet().size());
        state.counters["entries"] = static_cast<double>(setEntries().size());
    });
    // The scan: every page loaded and each entity's lookup made and matched, per query.
    bench::registerBenchmark("docset/query_scan", [](benchmark::State& state) {
        if (!enoughPages(state)) return;
        auto const& inputs = pageSet();
        std::size_t next = 0;
        for (auto _ : state) {
            std::u16string const query = utf8::utf8to16(queries[next++ % queries.size()]);
            std::size_t hits = 0;
            for (auto const& input : inputs) {
                refpage::LoadResult const loaded = refpage::loadPage(*input.text, input.source);
                if (!loaded.ok()) continue;
                for (auto const& entity : refpage::nativePage(loaded.page.get()).getRefEntities())
                    hits += entity.getName().find(query) != std::u16string::npos ? 1 : 0;
            }
            benchmark::DoNotOptimize(hits);
        }
    })->Unit(benchmark::kMillisecond);
    bench::registerBenchmark("docset/index_build", [](benchmark::State& state) {
        if (!enoughPages(state)) return;
        auto const file = std::filesystem::temp_directory_path() / ("docset-bench-" + std::to_string(getpid()) + ".sqlite");
        for (auto _ : state) {
            refpage::LoadedSet const loaded = refpage::loadDocSet(pageSet(), 1, {});
            refpage::writeLookupIndex(file, refpage::lookupEntries(loaded.set));
        }
        std::filesystem::remove(file);
    })->Unit(benchmark::kMillisecond);
    bench::registerBenchmark("docset/check", [](benchmark::State& state) {
        if (!enoughPages(state)) return;
        for (auto _ : state) benchmark::DoNotOptimize(checkSet(1));
    })->Unit(benchmark::kMillisecond);
    // Wall-clock time: what threads save is elapsed time, not CPU time.
    for (unsigned const jobs : {1U, 2U})
        bench::registerBenchmark("docset/check_threads/" + std::to_string(jobs), [jobs](benchmark::State& state) {
            if (!enoughPages(state)) return;
            for (auto _ : state) benchmark::DoNotOptimize(checkSet(jobs));
        })->Unit(benchmark::kMillisecond)->UseRealTime();
    return 0;
}();

}  // namespace
