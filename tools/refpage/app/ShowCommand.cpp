#include <fmt/format.h>

#include <memory>
#include <refpage/PageLoader.hpp>
#include <refpage/PageLookup.hpp>
#include <string>

#include "Commands.hpp"
#include "PageFiles.hpp"
#include "SamplePage.hpp"

namespace refpage {

namespace {

struct ShowOptions {
    std::string file;  ///< empty: the sample page
    bool strict = false;
};

int show(ShowOptions const& options) {
    LoadOptions const load{options.strict};
    LoadResult const result = options.file.empty() ? loadPage(samplePage(), "<sample numpy.add.json>", load)
                                                   : loadPageFile(options.file, load);
    printErrors(result.warnings, "warning");
    if (!result.ok()) {
        printErrors(result.errors, "error");
        return exitFailed;
    }
    fmt::print("{}", renderPage(nativePage(result.page.get())));
    return exitOk;
}

}  // namespace

Command addShowCommand(CLI::App& app) {
    auto options = std::make_shared<ShowOptions>();
    CLI::App* cli =
        app.add_subcommand("show", "Print a page for a person to read (with no FILE, a bundled sample page)");
    cli->add_option("FILE", options->file, "Page file (JSON)");
    cli->add_flag("--strict", options->strict, "Treat warnings as errors");
    return {cli, [options] { return show(*options); }};
}

}  // namespace refpage
