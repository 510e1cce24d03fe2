#include <fmt/format.h>

#include <memory>
#include <optional>
#include <refpage/docset/DocSet.hpp>
#include <refpage/docset/LookupIndex.hpp>
#include <refpage/interchange/InventoryWriter.hpp>
#include <refpage/site/Site.hpp>
#include <refpage/support/AtomicFile.hpp>
#include <span>
#include <string>
#include <vector>

#include "Commands.hpp"
#include "NamedPages.hpp"
#include "SetOutput.hpp"

namespace refpage {

namespace {

struct InventoryCommandOptions {
    std::vector<std::string> paths;
    std::string output;
    InventoryOptions inventory;
};

int inventory(InventoryCommandOptions const& options, GlobalOptions const& global) {
    if (refuseStdinNamedTwice(options.paths)) return exitUsage;
    std::optional<SetForFile> const set = loadSetForFile(options.paths, options.output, global);
    if (!set) return exitFailed;
    // Each entry at its page's path in the site that `site` writes of the same pages.
    DocSet const& pages = set->loaded.set;
    std::vector<InventoryEntry> const entries = siteInventoryEntries(siteSearchEntries(pages, planSite(pages).paths));
    std::string error;
    if (!replaceFile(options.output, inventoryBytes(entries, options.inventory), error)) {
        fmt::print(stderr, "error: {}\n", error);
        return exitFailed;
    }
    printWritten(*set, entries.size(), options.output, global);
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
