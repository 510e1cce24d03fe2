#include <fmt/format.h>

#include <memory>
#include <optional>
#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <refpage/Json.hpp>
#include <refpage/LookupIndex.hpp>
#include <refpage/ParallelLoad.hpp>
#include <refpage/TextEscape.hpp>
#include <refpage/TextTable.hpp>
#include <string>
#include <vector>

#include "Commands.hpp"
#include "PageFiles.hpp"

namespace refpage {

namespace {

using namespace reference::property;

struct FindOptions {
    std::string query;
    std::vector<std::string> paths;
    std::string index;
    std::size_t limit = 0;
    unsigned jobs = 0;
    bool json = false;
    bool strict = false;
};

/// The index named by --index, or one built in memory from the pages; nullopt when a page failed.
std::optional<LookupIndex> openIndex(FindOptions const& options) {
    if (!options.index.empty()) return LookupIndex::open(options.index);
    PageFiles const files = collectPageFiles(options.paths);
    printErrors(files.missing, "error: ");
    std::vector<PageInput> const inputs = fileInputs(files.files);
    std::vector<LoadResult> const results = loadPages(inputs, options.jobs, LoadOptions{options.strict});
    bool failed = !files.missing.empty();
    for (auto const& result : results) {
        printErrors(result.warnings, "warning: ");
        printErrors(result.errors, "error: ");
        failed = failed || !result.ok();
    }
    if (failed) return std::nullopt;
    DocSet const set(docSetPages(inputs, results));
    return LookupIndex::inMemory(lookupEntries(set));
}

Json hitJson(LookupHit const& hit) {
    return {{"name", hit.name},
            {"entityType", RefEntityType::enumToString(hit.type)},
            {"functionType", FunctionType::enumToString(hit.functionType)},
            {"purpose", hit.purpose},
            {"deprecated", hit.deprecated},
            {"href", hit.href},
            {"page", hit.pageFile},
            {"rank", hit.tier}};
}

int find(FindOptions const& options) {
    if (options.index.empty() == options.paths.empty()) {
        fmt::print(stderr, "refpage find: give either --index FILE or pages, not both\n");
        return exitUsage;
    }
    std::optional<LookupIndex> const index = openIndex(options);
    if (!index) return exitFailed;
    std::vector<LookupHit> const hits = index->find(options.query, options.limit);
    if (options.json) {
        for (auto const& hit : hits)
            fmt::print("{}\n", hitJson(hit).dump(-1, ' ', false, Json::error_handler_t::replace));
    } else if (!hits.empty()) {
        TextTable table({"Name", "Type", "Function", "Deprecated", "Link", "Purpose"}, std::size_t(-1));
        for (auto const& hit : hits)
            table.addRow({displayable(hit.name), RefEntityType::enumToString(hit.type),
                          FunctionType::enumToString(hit.functionType), hit.deprecated ? "yes" : "no",
                          displayable(hit.href), displayable(hit.purpose)});
        fmt::print("{}{} of {} entries\n", table.render(0), hits.size(), index->size());
    }
    if (hits.empty()) fmt::print(stderr, "nothing matches {}\n", refpage::quoted(options.query));
    return hits.empty() ? exitFailed : exitOk;
}

}  // namespace

Command addFindCommand(CLI::App& app) {
    auto options = std::make_shared<FindOptions>();
    CLI::App* cli = app.add_subcommand(
        "find",
        "Look a name up: exact name first, then exact last component (\"sort\" finds numpy.sort), then name "
        "prefix, then every word found in the name or purpose (best BM25 first); deprecated entries after "
        "current ones at equal rank. Exit status 1 when nothing matches");
    cli->add_option("QUERY", options->query, "A name, the end of a name, its beginning, or words")->required();
    cli->add_option("PATH", options->paths, "Page files, or folders searched recursively for *.json");
    cli->add_option("--index", options->index, "A lookup index written by `refpage index`, instead of pages");
    cli->add_flag("--json", options->json,
                  "One JSON object per hit and line: name, entityType, functionType, purpose, deprecated, href, "
                  "page (the page file), rank (the tier it matched in)");
    cli->add_option("--limit", options->limit, "Show at most N hits (default: all)");
    cli->add_option("-j,--jobs", options->jobs, "Threads loading pages (default: one per core)");
    cli->add_flag("--strict", options->strict, "Treat warnings as errors");
    return {cli, [options] { return find(*options); }};
}

}  // namespace refpage
