#include "SiteInputs.hpp"

#include <refpage/site/Html.hpp>

#include <fmt/format.h>

#include <refpage/docset/AssetFiles.hpp>
#include <refpage/format/Inputs.hpp>
#include <refpage/support/AtomicFile.hpp>
#include <refpage/support/OutputOverlap.hpp>
#include <refpage/support/Escape.hpp>

#include "Diagnostics.hpp"
#include "NamedPages.hpp"

namespace refpage {

namespace {

/// Loads every page on `global.jobs` threads, in entry order; prints load errors and
/// (unless quiet) warnings, and reads the templates.
SiteInputs loadSiteInputs(SiteCommandOptions const& options, GlobalOptions const& global) {
    SiteInputs inputs;
    if (refuseStdinNamedTwice(options.paths)) {
        inputs.status = exitUsage;
        return inputs;
    }
    inputs.inputs = namedInputs(options.paths);
    // Pages are read twice, to plan the site and to render it; standard input can be read only once.
    for (auto& input : inputs.inputs) {
        if (input.text || !input.entry.isStdin()) continue;
        std::string text;
        PageError error;
        if (readStandardInput(text, error))
            input.text = std::move(text);
        else
            input.entry.error = std::move(error);
    }
    inputs.site.load = LoadOptions{global.strict};
    inputs.loaded = loadDocSet(inputs.inputs, global.jobs, inputs.site.load, SummaryLinks::Left);
    printLoadDiagnostics(inputs.loaded, global.quiet);
    if (inputs.loaded.failed != 0) inputs.status = exitFailed;
    if (inputs.inputs.empty()) {
        fmt::print(stderr, "error: no page found: no *.json file in the folders given\n");
        inputs.status = exitFailed;
    }
    inputs.site.jobs = global.jobs;
    if (!options.title.empty()) inputs.site.title = options.title;
    inputs.site.baseUrl = options.baseUrl;
    inputs.site.assets = options.assets.empty() ? defaultAssetFolder(options.paths) : std::filesystem::path(options.assets);
    if (!options.templates.empty()) {
        PageErrors errors;
        inputs.site.templates = SiteTemplates::load(options.templates, errors);
        printErrors(errors, Severity::Error);
        if (!errors.empty()) inputs.status = exitFailed;
    }
    return inputs;
}

}  // namespace

int runSiteBuild(SiteCommandOptions const& options, GlobalOptions const& global, char const* what,
                 FunctionRef<SiteReport(SiteInputs& inputs)> build) {
    if (auto const overlap = outputOverlapsInput(options.output, options.paths)) throw FileError(*overlap);
    SiteInputs inputs = loadSiteInputs(options, global);
    if (inputs.status == exitUsage) return inputs.status;
    SiteReport report;
    if (inputs.status == exitOk) report = build(inputs);
    if (!global.quiet) printErrors(report.warnings, Severity::Warning);
    printErrors(report.errors, Severity::Error);
    if (!global.quiet) {
        if (report.committed)
            fmt::print(stderr, "{}: {} pages written to {}, {} unresolved links shown as text, {} pages moved\n", what,
                       report.pagesWritten, refpage::quoted(options.output), report.unresolvedLinks, report.movedPages);
        else
            fmt::print(stderr, "{}: nothing written; {} is as it was\n", what, refpage::quoted(options.output));
    }
    if (inputs.status != exitOk) return inputs.status;
    bool const failed = !report.ok() || !report.committed || (global.strict && !report.warnings.empty());
    return failed ? exitFailed : exitOk;
}

void addSiteOptions(CLI::App& cli, SiteCommandOptions& options, char const* outputHelp) {
    cli.add_option("PAGES", options.paths, "Page files (- for standard input), or folders searched for *.json")
        ->required();
    cli.add_option("-o,--output", options.output, outputHelp)->required();
    cli.add_option("--templates", options.templates,
                   "Folder whose page.mustache, index.mustache, 404.mustache, link.mustache, search.mustache, "
                   "style.css, site.js, search.js or search-rank.js replace the defaults");
    cli.add_option("--title", options.title, "Title shown on every page");
    cli.add_option("--base-url", options.baseUrl,
                   "URL where the site will be served (http or https); 404.html links from it, and a docset "
                   "names it as its online fallback")
        ->check([](std::string const& url) { return isWebUrl(url) ? std::string() : "must be an http: or https: URL"; });
    cli.add_option("--assets", options.assets,
                   "Folder of the files pages reference (thumbnails, images), copied into the site at their paths "
                   "(default: the first folder of pages given, or the folder of the first page file)");
}

}  // namespace refpage
