#include <fmt/format.h>

#include <memory>
#include <refpage/format/Loader.hpp>
#include <refpage/terminal/PageView.hpp>
#include <string>

#include "Commands.hpp"
#include "Diagnostics.hpp"
#include "NamedPages.hpp"
#include "SamplePage.hpp"

namespace refpage {

namespace {

int show(std::string const& file, GlobalOptions const& global) {
    LoadOptions const load{global.strict};
    LoadResult const result =
        file.empty() ? loadPage(samplePage(), "<sample refpage.check.json>", load) : loadInput(PageInput::named(file), load);
    if (!global.quiet) printErrors(result.warnings, Severity::Warning);
    if (!result.ok()) {
        printErrors(result.errors, Severity::Error);
        return exitFailed;
    }
    fmt::print("{}", renderPage(nativePage(result.page.get())));
    return exitOk;
}

}  // namespace

Command addShowCommand(CLI::App& app, GlobalOptions const& global) {
    auto file = std::make_shared<std::string>();  // empty: the sample page
    CLI::App* cli =
        app.add_subcommand("show", "Print a page for a person to read (with no FILE, a bundled sample page)");
    cli->add_option("FILE", *file, "Page file (JSON; - for standard input)");
    return {cli, [file, &global] { return show(*file, global); }};
}

}  // namespace refpage
