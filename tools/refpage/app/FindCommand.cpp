#include <fmt/format.h>

#include <memory>
#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <refpage/PageLoader.hpp>
#include <refpage/PageLookup.hpp>
#include <refpage/TextTable.hpp>
#include <utf8.h>
#include <string>
#include <vector>

#include "Commands.hpp"
#include "PageFiles.hpp"

namespace refpage {

namespace {

using namespace reference::property;

struct FindOptions {
    std::string name;
    std::vector<std::string> paths;
    bool strict = false;
};

int find(FindOptions const& options) {
    PageFiles const pages = collectPageFiles(options.paths);
    printErrors(pages.missing, "error");
    bool bad = !pages.missing.empty();
    std::u16string const wanted = utf8::utf8to16(options.name);
    TextTable table({"Name", "Type", "Function", "Deprecated", "Purpose", "Link"}, 40);
    std::size_t matches = 0;
    for (auto const& file : pages.files) {
        LoadResult const result = loadPageFile(file, LoadOptions{options.strict});
        printErrors(result.warnings, "warning");
        if (!result.ok()) {
            printErrors(result.errors, "error");
            bad = true;
            continue;
        }
        RefItemLookup const lookup = makeLookup(nativePage(result.page.get()));
        if (lookup.getName().find(wanted) == std::u16string::npos) continue;
        ++matches;
        table.addRow({utf8::utf16to8(lookup.getName()), RefEntityType::enumToString(lookup.getType()),
                      FunctionType::enumToString(lookup.getFunctionType()), lookup.isDeprecated() ? "yes" : "no",
                      utf8::utf16to8(lookup.getPurpose()), utf8::utf16to8(lookup.getHref())});
    }
    if (matches == 0)
        fmt::print("no page name contains \"{}\"\n", options.name);
    else
        fmt::print("{}{} of {} pages\n", table.render(0), matches, pages.files.size());
    return bad ? exitFailed : exitOk;
}

}  // namespace

Command addFindCommand(CLI::App& app) {
    auto options = std::make_shared<FindOptions>();
    CLI::App* cli = app.add_subcommand("find", "List the pages whose name contains NAME, with their lookup summary");
    cli->add_option("NAME", options->name, "Text the page's name must contain (case-sensitive)")->required();
    cli->add_option("PATH", options->paths, "Page files, or folders searched recursively for *.json")->required();
    cli->add_flag("--strict", options->strict, "Treat warnings as errors");
    return {cli, [options] { return find(*options); }};
}

}  // namespace refpage
