// The HTML site of the corpus against `refpage check` of it: both start from the page
// texts (read once, outside the timed loop); the site loads every page, renders it and
// writes the whole site to a temporary folder, made by one build before the timed loop
// (so the loop rewrites files: creating ~1,000 files is the file system's cost, measured
// by the tool's whole-process run). Wall-clock time, so that -j 2 shows.
#include "support/Corpus.hpp"
#include "support/Registration.hpp"

#include <filesystem>
#include <refpage/format/Check.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/site/Site.hpp>
#include <vector>

namespace {

/// The corpus texts as inputs, made once.
std::vector<refpage::PageInput> const& corpusInputs() {
    static std::vector<refpage::PageInput> const inputs = [] {
        std::vector<refpage::PageInput> result;
        for (auto const& entry : bench::corpus()) result.push_back(refpage::PageInput::memory(entry.path, entry.json));
        return result;
    }();
    return inputs;
}

/// Loads the corpus as a doc set on `jobs` threads and builds its site into `output`, as
/// `refpage site` does; false when that fails.
bool buildCorpusSite(std::filesystem::path const& output, unsigned jobs) {
    auto const& inputs = corpusInputs();
    refpage::LoadedSet const loaded = refpage::loadDocSet(inputs, jobs, {});
    refpage::SiteOptions options;
    options.output = output;
    options.jobs = jobs;
    refpage::SiteReport const report = refpage::buildSite(loaded, inputs, options);
    return report.ok() && loaded.failed == 0;
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
