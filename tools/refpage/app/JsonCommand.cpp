#include <fmt/format.h>

#include <memory>
#include <refpage/PageLoader.hpp>
#include <refpage/PageWriter.hpp>
#include <string>

#include "Commands.hpp"
#include "PageFiles.hpp"

namespace refpage {

namespace {

struct JsonOptions {
    std::string file;
    bool strict = false;
};

int json(JsonOptions const& options) {
    LoadResult const result = loadPageFile(options.file, LoadOptions{options.strict});
    printErrors(result.warnings, "warning");
    if (!result.ok()) {
        printErrors(result.errors, "error");
        return exitFailed;
    }
    fmt::print("{}\n", pageText(result.page.get()));
    return exitOk;
}

}  // namespace

Command addJsonCommand(CLI::App& app) {
    auto options = std::make_shared<JsonOptions>();
    CLI::App* cli = app.add_subcommand(
        "json", "Print a page read back through the host as canonical JSON (enumerations as numbers)");
    cli->add_option("FILE", options->file, "Page file (JSON)")->required();
    cli->add_flag("--strict", options->strict, "Treat warnings as errors");
    return {cli, [options] { return json(*options); }};
}

}  // namespace refpage
