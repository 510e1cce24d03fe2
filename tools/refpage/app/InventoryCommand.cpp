#include <fmt/format.h>

#include <chrono>
#include <memory>
#include <refpage/docset/DocSet.hpp>
#include <refpage/docset/LookupIndex.hpp>
#include <refpage/docset/LoadSet.hpp>
#include <refpage/interchange/InventoryWriter.hpp>
#include <refpage/site/Site.hpp>
#include <refpage/support/AtomicFile.hpp>
#include <refpage/support/Escape.hpp>
#include <span>
#include <string>
#include <vector>

#include "Commands.hpp"
#include "Diagnostics.hpp"
#include "NamedPages.hpp"

namespace refpage {

namespace {

struct InventoryCommandOptions {
    std::vector<std::string> paths;
    std::string output;
    InventoryOptions inventory;
};

/// One entry per entity of the set, each at its page's path in the site that `site` writes of
/// the same pages (planSite), percent-encoded.
std::vector<InventoryEntry> siteInventoryEntries(DocSet const& set) {
    return inventoryEntries(siteLookupEntries(set, planSite(set).paths));
}

int inventory(InventoryCommandOptions const& options, GlobalOptions const& global) {
    auto const start = std::chrono::steady_clock::now();
    if (std::string const usage = stdinNamedTwice(options.paths); !usage.empty()) {
        fmt::print(stderr, "refpage: {}\n", usage);
        return exitUsage;
    }
    std::vector<PageInput> const inputs = namedInputs(options.paths);
    LoadedSet const loaded = loadDocSet(inputs, global.jobs, LoadOptions{global.strict});
    printLoadDiagnostics(loaded, global.quiet);
    if (inputs.empty()) {
        fmt::print(stderr, "error: no page found: no *.json file in the folders given\n");
        return exitFailed;
    }
    if (loaded.failed != 0) {
        fmt::print(stderr, "{} pages, {} failed: {} left as it was\n", inputs.size(), loaded.failed,
                   displayable(options.output));
        return exitFailed;
    }
    std::vector<InventoryEntry> const entries = siteInventoryEntries(loaded.set);
    std::string error;
    if (!replaceFile(options.output, inventoryBytes(entries, options.inventory), error)) {
        fmt::print(stderr, "error: {}\n", error);
        return exitFailed;
    }
    std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - start;
    if (!global.quiet)
        fmt::print("{} pages, {} entries written to {} ({:.2f} s)\n", inputs.size(), entries.size(),
                   displayable(options.output), elapsed.count());
    return exitOk;
}

}  // namespace

Command addInventoryCommand(CLI::App& app, GlobalOptions const& global) {
    auto options = std::make_shared<InventoryCommandOptions>();
    CLI::App* cli = app.add_subcommand(
        "inventory",
        "Write the Sphinx inventory (objects.inv) of pages, one entry per entity at its page in the site that "
        "`site` writes, so that Sphinx projects can link to that site (intersphinx); the file is replaced only "
        "once the new one is complete");
    cli->add_option("PAGES", options->paths, "Page files (- for standard input), or folders searched for *.json")
        ->required();
    cli->add_option("-o,--output", options->output, "The inventory file to write (objects.inv at the site's root)")
        ->required();
    cli->add_option("--project", options->inventory.project, "The project's name, as Sphinx shows it")->required();
    cli->add_option("--version", options->inventory.version, "The project's version, as Sphinx shows it");
    cli->add_option("--domain", options->inventory.domain,
                    "The Sphinx domain of functions, classes, methods, properties and packages (default py); "
                    "other entities are std:label")
        ->check([](std::string const& domain) {
            return validInventoryDomain(domain)
                       ? std::string()
                       : "expected an ASCII letter, then letters, digits, '_', '-' or '.' (as py, js)";
        });
    return {cli, [options, &global] { return inventory(*options, global); }};
}

}  // namespace refpage
