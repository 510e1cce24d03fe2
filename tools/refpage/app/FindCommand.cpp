#include <fmt/format.h>

#include <memory>
#include <optional>
#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <refpage/format/Json.hpp>
#include <refpage/docset/LookupIndex.hpp>
#include <refpage/docset/LoadSet.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/terminal/TextTable.hpp>
#include <string>
#include <vector>

#include "Commands.hpp"
#include "Diagnostics.hpp"
#include "NamedPages.hpp"

namespace refpage {

namespace {

using namespace reference::property;

struct FindOptions {
    std::string query;
    std::vector<std::string> paths;
    std::string index;
    std::size_t limit = 0;
    bool json = false;
};

/// The index named by --index, or one built in memory from the pages; nullopt when a page failed.
std::optional<LookupIndex> openIndex(FindOptions const& options, GlobalOptions const& global) {
    if (!options.index.empty()) return LookupIndex::open(options.index);
    LoadedSet const loaded =
        loadDocSet(namedInputs(options.paths), global.jobs, LoadOptions{global.strict}, SummaryLinks::Left);
    printLoadDiagnostics(loaded, global.quiet);
    if (loaded.failed != 0) return std::nullopt;
    return LookupIndex::inMemory(lookupEntries(loaded.set));
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

int find(FindOptions const& options, GlobalOptions const& global) {
    if (options.index.empty() == options.paths.empty()) {
        fmt::print(stderr, "refpage: find takes either --index FILE or pages, not both\n");
        return exitUsage;
    }
    if (refuseStdinNamedTwice(options.paths)) return exitUsage;
    std::optional<LookupIndex> const index = openIndex(options, global);
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
        fmt::print("{}", table.render(0));
        if (!global.quiet) fmt::print("{} of {} entries\n", hits.size(), index->size());
    }
    if (hits.empty() && !global.quiet) fmt::print(stderr, "nothing matches {}\n", refpage::quoted(options.query));
    return hits.empty() ? exitFailed : exitOk;
}

}  // namespace

Command addFindCommand(CLI::App& app, GlobalOptions const& global) {
    auto options = std::make_shared<FindOptions>();
    CLI::App* cli = app.add_subcommand(
        "find",
        "Look a name up: exact name first, then exact last component (\"sort\" finds numpy.sort), then name "
        "prefix, then every word found in the name or purpose (best BM25 first); deprecated entries after "
        "current ones at equal rank. Exit status 1 when nothing matches");
    cli->add_option("QUERY", options->query, "A name, the end of a name, its beginning, or words")->required();
    cli->add_option("PATH", options->paths, "Page files (- for standard input), or folders searched for *.json");
    cli->add_option("--index", options->index, "A lookup index written by `refpage index`, instead of pages");
    cli->add_flag("--json", options->json,
                  "One JSON object per hit and line: name, entityType, functionType, purpose, deprecated, href, "
                  "page (the page file), rank (the tier it matched in)");
    cli->add_option("--limit", options->limit, "Show at most N hits (default: all)");
    return {cli, [options, &global] { return find(*options, global); }};
}

}  // namespace refpage
