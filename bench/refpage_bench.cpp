// refpage check over the corpus against parsing the same JSON texts alone, per
// page; the texts are read once, outside the timed loop. Between the two: loading
// (parse, check, build through the host) and building alone from pages parsed
// beforehand, which is the library's, the host's and the glue's share of a load.
// Beside the bare parse, its floor: the JSON library's lexer alone, building nothing.
// The corpus pages are in the written form, which check reads once; the same pages
// laid out otherwise are read twice (the page, then its written text).
#include "support/AllocationCounter.hpp"
#include "support/Corpus.hpp"
#include "support/Registration.hpp"

#include <refpage/format/Check.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/format/Json.hpp>
#include <refpage/format/Parser.hpp>

#include <vector>

namespace {

/// Runs `step(text, path)` on every corpus page; one iteration is the whole corpus.
template <class Step>
void overCorpus(benchmark::State& state, Step step) {
    auto const& pages = bench::corpus();
    bench::AllocationMeter const meter;
    for (auto _ : state) {
        for (auto const& entry : pages) {
            if (!step(entry.json, entry.path)) {
                state.SkipWithError(("failed on " + entry.path).c_str());
                return;
            }
        }
    }
    meter.report(state, static_cast<double>(pages.size()));
    bench::reportTimePerOperation(state, static_cast<double>(pages.size()));
}

int const registered = [] {
    bench::registerBenchmark("refpage/parse_json_only", [](benchmark::State& state) {
        overCorpus(state, [](std::string const& text, std::string const& path) {
            static_cast<void>(path);
            auto parsed = refpage::Json::parse(text);
            benchmark::DoNotOptimize(parsed);
            return parsed.is_object();
        });
    });
    bench::registerBenchmark("refpage/lex_json_only", [](benchmark::State& state) {
        overCorpus(state, [](std::string const& text, std::string const& path) {
            static_cast<void>(path);
            return refpage::Json::accept(text);
        });
    });
    bench::registerBenchmark("refpage/check_page_laid_out_otherwise", [](benchmark::State& state) {
        std::vector<std::string> texts;
        for (auto const& entry : bench::corpus()) texts.push_back(refpage::Json::parse(entry.json).dump(2));
        bench::AllocationMeter const meter;
        for (auto _ : state) {
            for (std::size_t i = 0; i < texts.size(); ++i) {
                if (!refpage::checkPage(texts[i], bench::corpus()[i].path).passed()) {
                    state.SkipWithError(("failed on " + bench::corpus()[i].path).c_str());
                    return;
                }
            }
        }
        meter.report(state, static_cast<double>(texts.size()));
        bench::reportTimePerOperation(state, static_cast<double>(texts.size()));
    });
    bench::registerBenchmark("refpage/load_page", [](benchmark::State& state) {
        overCorpus(state, [](std::string const& text, std::string const& path) {
            refpage::LoadResult const loaded = refpage::loadPage(text, path);
            return loaded.ok();
        });
    });
    bench::registerBenchmark("refpage/build_through_host", [](benchmark::State& state) {
        std::vector<refpage::ParsedPage> parsed;
        for (auto const& entry : bench::corpus()) {
            parsed.push_back(refpage::parsePage(entry.json, entry.path));
        }
        bench::AllocationMeter const meter;
        for (auto _ : state) {
            for (std::size_t i = 0; i < parsed.size(); ++i) {
                refpage::LoadResult const loaded = refpage::buildPage(parsed[i], bench::corpus()[i].path);
                benchmark::DoNotOptimize(loaded.page.get());
            }
        }
        meter.report(state, static_cast<double>(parsed.size()));
        bench::reportTimePerOperation(state, static_cast<double>(parsed.size()));
    });
    bench::registerBenchmark("refpage/check_page", [](benchmark::State& state) {
        overCorpus(state, [](std::string const& text, std::string const& path) {
            return refpage::checkPage(text, path).passed();
        });
    });
    return 0;
}();

}  // namespace
