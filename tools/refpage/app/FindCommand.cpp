#include <fmt/format.h>

#include <memory>
#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <refpage/PageLoader.hpp>
#include <refpage/PageLookup.hpp>
#include <refpage/PageSource.hpp>
#include <refpage/TextEscape.hpp>
#include <refpage/TextTable.hpp>
#include <utf8.h>
#include <string>
#include <vector>

#include "Commands.hpp"
#include "Diagnostics.hpp"
#include "NamedPages.hpp"

namespace refpage {

namespace {

using namespace reference::property;

struct FindOptions {
    std::string name;
    std::vector<std::string> paths;
};

int find(FindOptions const& options, GlobalOptions const& global) {
    if (std::string const usage = stdinNamedTwice(options.paths); !usage.empty()) {
        fmt::print(stderr, "refpage: {}\n", usage);
        return exitUsage;
    }
    std::vector<PageEntry> const entries = findPageEntries(options.paths);
    bool bad = false;
    std::u16string const wanted = utf8::utf8to16(options.name);
    TextTable table({"Name", "Type", "Function", "Deprecated", "Purpose", "Link"}, 40);
    std::size_t matches = 0;
    for (auto const& entry : entries) {
        LoadResult const result = loadEntry(entry, LoadOptions{global.strict});
        if (!global.quiet) printErrors(result.warnings, "warning");
        if (!result.ok()) {
            printErrors(result.errors, "error");
            bad = true;
            continue;
        }
        RefItemLookup const lookup = makeLookup(nativePage(result.page.get()));
        if (lookup.getName().find(wanted) == std::u16string::npos) continue;
        ++matches;
        table.addRow({displayable(utf8::utf16to8(lookup.getName())), RefEntityType::enumToString(lookup.getType()),
                      FunctionType::enumToString(lookup.getFunctionType()), lookup.isDeprecated() ? "yes" : "no",
                      displayable(utf8::utf16to8(lookup.getPurpose())), displayable(utf8::utf16to8(lookup.getHref()))});
    }
    if (matches == 0) {
        if (!global.quiet) fmt::print("no page name contains {}\n", refpage::quoted(options.name));
        return exitFailed;
    }
    fmt::print("{}", table.render(0));
    if (!global.quiet) fmt::print("{} of {} pages\n", matches, entries.size());
    return bad ? exitFailed : exitOk;
}

}  // namespace

Command addFindCommand(CLI::App& app, GlobalOptions const& global) {
    auto options = std::make_shared<FindOptions>();
    CLI::App* cli = app.add_subcommand("find", "List the pages whose name contains NAME, with their lookup summary");
    cli->add_option("NAME", options->name, "Text the page's name must contain (case-sensitive)")->required();
    cli->add_option("PATH", options->paths, "Page files (- for standard input), or folders searched for *.json")
        ->required();
    return {cli, [options, &global] { return find(*options, global); }};
}

}  // namespace refpage
