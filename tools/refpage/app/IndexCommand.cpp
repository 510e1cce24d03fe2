#include <fmt/format.h>

#include <memory>
#include <optional>
#include <refpage/docset/LookupIndex.hpp>
#include <string>
#include <vector>

#include "Commands.hpp"
#include "NamedPages.hpp"
#include "SetOutput.hpp"

namespace refpage {

namespace {

struct IndexOptions {
    std::vector<std::string> paths;
    std::string output;
};

int index(IndexOptions const& options, GlobalOptions const& global) {
    if (refuseStdinNamedTwice(options.paths)) return exitUsage;
    std::optional<SetForFile> const set = loadSetForFile(options.paths, options.output, global);
    if (!set) return exitFailed;
    std::vector<LookupEntry> const entries = lookupEntries(set->loaded.set);
    writeLookupIndex(options.output, entries);
    printWritten(*set, entries.size(), options.output, global);
    return exitOk;
}

}  // namespace

Command addIndexCommand(CLI::App& app, GlobalOptions const& global) {
    auto options = std::make_shared<IndexOptions>();
    CLI::App* cli = app.add_subcommand(
        "index",
        "Write the lookup index of pages (one entry per entity) as an SQLite database that `find --index` "
        "reads and that serves as a docset search index; the file is replaced only once the new one is complete");
    cli->add_option("PATH", options->paths, "Page files (- for standard input), or folders searched for *.json")
        ->required();
    cli->add_option("-o,--output", options->output, "The index file to write")->required();
    return {cli, [options, &global] { return index(*options, global); }};
}

}  // namespace refpage
