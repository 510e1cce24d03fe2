#include "SiteInputs.hpp"

#include <fmt/format.h>

#include <thread>

#include "Commands.hpp"
#include "PageFiles.hpp"

namespace refpage {

SiteInputs loadSiteInputs(SiteCommandOptions const& options) {
    SiteInputs inputs;
    PageFiles const files = collectPageFiles(options.paths);
    printErrors(files.missing, "error: ");
    inputs.ok = files.missing.empty();
    unsigned const jobs = options.jobs == 0 ? std::max(1u, std::thread::hardware_concurrency()) : options.jobs;
    inputs.pages = site_standin::loadPages(files.files, jobs, LoadOptions{options.strict});
    printErrors(inputs.pages.warnings, "warning: ");
    printErrors(inputs.pages.errors, "error: ");
    inputs.ok = inputs.ok && inputs.pages.errors.empty();
    inputs.site.jobs = jobs;
    if (!options.title.empty()) inputs.site.title = options.title;
    if (!options.templates.empty()) {
        PageErrors errors;
        inputs.site.templates = SiteTemplates::load(options.templates, errors);
        printErrors(errors, "error: ");
        inputs.ok = inputs.ok && errors.empty();
    }
    return inputs;
}

int finishSiteBuild(SiteReport const& report, SiteInputs const& inputs, SiteCommandOptions const& options,
                    char const* what) {
    if (!options.quiet) printErrors(report.warnings, "warning: ");
    printErrors(report.errors, "error: ");
    std::size_t const derived = report.warnings.size() - report.unresolvedLinks;
    if (!options.quiet || !report.ok())
        fmt::print(stderr, "{}: {} pages written to {}, {} unresolved links shown as text, {} pages moved\n", what,
                   inputs.pages.inputs.size(), options.output, report.unresolvedLinks, derived);
    bool const failed = !inputs.ok || !report.ok() || (options.strict && !report.warnings.empty());
    return failed ? exitFailed : exitOk;
}

void addSiteOptions(CLI::App& cli, SiteCommandOptions& options) {
    cli.add_option("PAGES", options.paths, "Page files, or folders searched recursively for *.json")->required();
    cli.add_option("--templates", options.templates,
                   "Folder whose page.mustache, index.mustache, link.mustache, search.mustache, style.css, "
                   "search.js or search-rank.js replace the defaults");
    cli.add_option("--title", options.title, "Title shown on every page");
    cli.add_option("-j,--jobs", options.jobs, "Threads loading and rendering pages (0: one per core)")
        ->capture_default_str();
    cli.add_flag("--strict", options.strict, "Treat warnings as errors");
    cli.add_flag("-q,--quiet", options.quiet, "Print only errors");
}

}  // namespace refpage
