#include <fmt/format.h>

#include <chrono>
#include <memory>
#include <refpage/docset/LookupIndex.hpp>
#include <refpage/docset/LoadSet.hpp>
#include <refpage/support/AtomicFile.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/OutputOverlap.hpp>
#include <string>
#include <vector>

#include "Commands.hpp"
#include "Diagnostics.hpp"
#include "NamedPages.hpp"

namespace refpage {

namespace {

struct IndexOptions {
    std::vector<std::string> paths;
    std::string output;
};

int index(IndexOptions const& options, GlobalOptions const& global) {
    auto const start = std::chrono::steady_clock::now();
    if (std::string const usage = stdinNamedTwice(options.paths); !usage.empty()) {
        fmt::print(stderr, "refpage: {}\n", usage);
        return exitUsage;
    }
    if (auto const overlap = outputOverlapsInput(options.output, options.paths)) throw FileError(*overlap);
    requireReplaceableFile(options.output);  // a device or folder at -o is refused before pages are read
    std::vector<PageInput> const inputs = namedInputs(options.paths);
    LoadedSet const loaded = loadDocSet(inputs, global.jobs, LoadOptions{global.strict});
    printLoadDiagnostics(loaded, global.quiet);
    if (loaded.failed != 0) {
        fmt::print(stderr, "{} pages, {} failed: {} left as it was\n", inputs.size(), loaded.failed,
                   displayable(options.output));
        return exitFailed;
    }
    std::vector<LookupEntry> const entries = lookupEntries(loaded.set);
    writeLookupIndex(options.output, entries);
    std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - start;
    if (!global.quiet)
        fmt::print("{} pages, {} entries written to {} ({:.2f} s)\n", inputs.size(), entries.size(),
                   displayable(options.output), elapsed.count());
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
