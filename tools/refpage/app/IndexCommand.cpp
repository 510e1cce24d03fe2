#include <fmt/format.h>

#include <chrono>
#include <memory>
#include <refpage/LookupIndex.hpp>
#include <refpage/ParallelLoad.hpp>
#include <string>
#include <vector>

#include "Commands.hpp"
#include "PageFiles.hpp"

namespace refpage {

namespace {

struct IndexOptions {
    std::vector<std::string> paths;
    std::string output;
    unsigned jobs = 0;
    bool strict = false;
};

int index(IndexOptions const& options) {
    auto const start = std::chrono::steady_clock::now();
    PageFiles const files = collectPageFiles(options.paths);
    printErrors(files.missing, "error: ");
    std::vector<PageInput> const inputs = fileInputs(files.files);
    std::vector<LoadResult> const results = loadPages(inputs, options.jobs, LoadOptions{options.strict});
    std::size_t failed = 0;
    for (auto const& result : results) {
        printErrors(result.warnings, "warning: ");
        printErrors(result.errors, "error: ");
        failed += result.ok() ? 0 : 1;
    }
    if (failed != 0 || !files.missing.empty()) {
        fmt::print(stderr, "{} pages, {} failed: {} left as it was\n", inputs.size(), failed, options.output);
        return exitFailed;
    }
    DocSet const set(docSetPages(inputs, results));
    std::vector<LookupEntry> const entries = lookupEntries(set);
    writeLookupIndex(options.output, entries);
    std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - start;
    fmt::print("{} pages, {} entries written to {} ({:.2f} s)\n", inputs.size(), entries.size(), options.output,
               elapsed.count());
    return exitOk;
}

}  // namespace

Command addIndexCommand(CLI::App& app) {
    auto options = std::make_shared<IndexOptions>();
    CLI::App* cli = app.add_subcommand(
        "index",
        "Write the lookup index of pages (one entry per entity) as an SQLite database that `find --index` "
        "reads and that serves as a docset search index; the file is replaced only once the new one is complete");
    cli->add_option("PATH", options->paths, "Page files, or folders searched recursively for *.json")->required();
    cli->add_option("-o,--output", options->output, "The index file to write")->required();
    cli->add_option("-j,--jobs", options->jobs, "Threads loading pages (default: one per core)");
    cli->add_flag("--strict", options->strict, "Treat warnings as errors");
    return {cli, [options] { return index(*options); }};
}

}  // namespace refpage
