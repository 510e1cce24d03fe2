// Inputs crafted for the worst case, each at two sizes to show linear growth (time per
// item alike at both): site paths for pages without an Href, all of one name (each
// needs a numbered derived path), find with one query word repeated, and the doc set's
// check of pages that all document one entity name.
#include "support/Registration.hpp"

#include <reference/property/RecordProducer.hpp>
#include <refpage/docset/DocSet.hpp>
#include <refpage/docset/LookupIndex.hpp>
#include <refpage/site/Paths.hpp>
#include <string>
#include <vector>

namespace {

using namespace reference::property;

/// An index of 2,000 entries whose purposes all hold the word "value".
refpage::LookupIndex const& valueIndex() {
    static refpage::LookupIndex const index = [] {
        std::vector<refpage::LookupEntry> entries;
        for (int i = 0; i < 2000; ++i) {
            std::string const number = std::to_string(i);
            std::u16string const name = u"pkg.entry" + std::u16string(number.begin(), number.end());
            entries.push_back({RecordProducer::makeRefItemLookup(name, RefEntityType::Function, u"Returns the value.",
                                                                 false, u"ref/" + name + u".html",
                                                                 FunctionType::getDefaultValue()),
                               static_cast<std::size_t>(i), "page.json"});
        }
        return refpage::LookupIndex::inMemory(entries);
    }();
    return index;
}

int const registered = [] {
    for (int pages : {2000, 16000})
        bench::registerBenchmark("crafted/site_paths_without_href/" + std::to_string(pages), [pages](auto& state) {
            std::vector<std::string> const hrefs(static_cast<std::size_t>(pages));
            std::vector<std::string> const names(static_cast<std::size_t>(pages), "page");
            for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(refpage::assignPagePaths(hrefs, names));
            bench::reportTimePerOperation(state, pages);
        })->Unit(benchmark::kMillisecond);
    for (int words : {500, 4000})
        bench::registerBenchmark("crafted/find_repeated_word/" + std::to_string(words), [words](auto& state) {
            std::string query;
            for (int i = 0; i < words; ++i) query += "value ";
            auto const& index = valueIndex();
            for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(index.find(query));
            bench::reportTimePerOperation(state, words);
        })->Unit(benchmark::kMillisecond);
    for (int entities : {5000, 40000})
        bench::registerBenchmark("crafted/check_one_name/" + std::to_string(entities), [entities](auto& state) {
            std::vector<refpage::PageSummary> pages(static_cast<std::size_t>(entities) / 4);
            for (std::size_t p = 0; p < pages.size(); ++p) {
                pages[p].source = "p" + std::to_string(p) + ".json";
                for (int e = 0; e < 4; ++e)  // four entities a page, every one named alike, two types
                    pages[p].entities.push_back({"pkg.same", e % 2 ? RefEntityType::Method : RefEntityType::Function,
                                                 FunctionType::getDefaultValue()});
            }
            refpage::DocSet const set(std::move(pages));
            for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(set.check().findings.size());
            bench::reportTimePerOperation(state, entities);
        })->Unit(benchmark::kMillisecond);
    return 0;
}();

}  // namespace
