#include <fmt/format.h>

#include <memory>
#include <refpage/format/Loader.hpp>
#include <refpage/format/Writer.hpp>
#include <refpage/support/AtomicFile.hpp>
#include <refpage/support/OutputOverlap.hpp>
#include <string>

#include "Commands.hpp"
#include "Diagnostics.hpp"
#include "NamedPages.hpp"

namespace refpage {

namespace {

struct JsonOptions {
    std::string file;
    std::string output;  ///< empty or "-": standard output
};

int json(JsonOptions const& options, GlobalOptions const& global) {
    bool const toFile = !options.output.empty() && options.output != "-";
    if (toFile) {
        std::string const input[] = {options.file};
        if (auto const overlap = outputOverlapsInput(options.output, input)) throw FileError(*overlap);
        requireReplaceableFile(options.output);
    }
    LoadResult const result = loadInput(PageInput::named(options.file), LoadOptions{global.strict});
    if (!global.quiet) printErrors(result.warnings, Severity::Warning);
    if (!result.ok()) {
        printErrors(result.errors, Severity::Error);
        return exitFailed;
    }
    std::string const text = pageText(result.page.get()) + "\n";
    if (!toFile) {
        fmt::print("{}", text);
        return exitOk;
    }
    std::string error;
    if (!replaceFile(options.output, text, error)) {
        fmt::print(stderr, "error: {}\n", error);
        return exitFailed;
    }
    return exitOk;
}

}  // namespace

Command addJsonCommand(CLI::App& app, GlobalOptions const& global) {
    auto options = std::make_shared<JsonOptions>();
    CLI::App* cli = app.add_subcommand(
        "json", "Print a page read back through the host as canonical JSON (enumeration members by their keys)");
    cli->add_option("FILE", options->file, "Page file (JSON; - for standard input)")->required();
    cli->add_option("-o,--output", options->output,
                    "Write to this file (- for standard output); it is replaced only once the whole page is written");
    return {cli, [options, &global] { return json(*options, global); }};
}

}  // namespace refpage
