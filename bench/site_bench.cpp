// The HTML site of the corpus against `refpage check` of it: both start from the page
// texts (read once, outside the timed loop); the site loads every page, renders it and
// writes the whole site to a temporary folder, made by one build before the timed loop
// (so the loop rewrites files: creating ~1,000 files is the file system's cost, measured
// by the tool's whole-process run). Wall-clock time, so that -j 2 shows.
#include "support/Corpus.hpp"
#include "support/Registration.hpp"

#include <atomic>
#include <filesystem>
#include <refpage/format/Check.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/site/Site.hpp>
#include <refpage/site/Paths.hpp>
#include <thread>
#include <vector>

namespace {

/// Loads the corpus on `jobs` threads and builds its site into `output`; false when that fails.
bool buildCorpusSite(std::filesystem::path const& output, unsigned jobs) {
    auto const& corpus = bench::corpus();
    std::vector<refpage::LoadResult> loaded(corpus.size());
    std::atomic<std::size_t> next{0};
    auto load = [&] {
        for (std::size_t i = next++; i < corpus.size(); i = next++)
            loaded[i] = refpage::loadPage(corpus[i].json, corpus[i].path);
    };
    {
        std::vector<std::jthread> workers;
        for (unsigned t = 1; t < jobs; ++t) workers.emplace_back(load);
        load();
    }
    std::vector<refpage::SitePageInput> inputs;
    for (std::size_t i = 0; i < corpus.size(); ++i)
        if (loaded[i].ok()) inputs.push_back({corpus[i].path, &refpage::nativePage(loaded[i].page.get())});
    refpage::SiteOptions options;
    options.output = output;
    options.jobs = jobs;
    refpage::DocSet const set = refpage::siteDocSet(inputs);
    refpage::SiteReport const report = refpage::buildSite(inputs, refpage::siteLinkResolver(set), options);
    return report.ok() && inputs.size() == corpus.size();
}

void siteBuild(benchmark::State& state) {
    auto const output = std::filesystem::temp_directory_path() / "refprop_site_bench";
    unsigned const jobs = static_cast<unsigned>(state.range(0));
    if (!buildCorpusSite(output, jobs)) state.SkipWithError("the site build failed");
    for (auto _ : state)
        if (!buildCorpusSite(output, jobs)) {
            state.SkipWithError("the site build failed");
            break;
        }
    std::filesystem::remove_all(output);
    auto const& corpus = bench::corpus();
    bench::reportTimePerOperation(state, static_cast<double>(corpus.size()));
}

int const registered = [] {
    bench::registerBenchmark("site/check_corpus", [](benchmark::State& state) {
        for (auto _ : state)
            for (auto const& entry : bench::corpus()) {
                auto const report = refpage::checkPage(entry.json, entry.path);
                benchmark::DoNotOptimize(report.failures.data());
            }
        bench::reportTimePerOperation(state, static_cast<double>(bench::corpus().size()));
    })->UseRealTime();
    bench::registerBenchmark("site/build_corpus", siteBuild)->Arg(1)->Arg(2)->UseRealTime();
    return 0;
}();

}  // namespace
