#include "SiteInputs.hpp"

#include <refpage/site/Html.hpp>

#include <fmt/format.h>

#include <atomic>
#include <refpage/format/Inputs.hpp>
#include <refpage/support/Escape.hpp>
#include <thread>

#include "Diagnostics.hpp"
#include "NamedPages.hpp"

namespace refpage {

SiteInputs loadSiteInputs(SiteCommandOptions const& options, GlobalOptions const& global) {
    SiteInputs inputs;
    if (std::string const usage = stdinNamedTwice(options.paths); !usage.empty()) {
        fmt::print(stderr, "refpage: {}\n", usage);
        inputs.status = exitUsage;
        return inputs;
    }
    std::vector<PageEntry> const entries = findPageEntries(options.paths);
    LoadOptions const load{global.strict};
    inputs.results.resize(entries.size());
    std::atomic<std::size_t> next{0};
    auto work = [&] {
        for (std::size_t i = next++; i < entries.size(); i = next++) inputs.results[i] = loadEntry(entries[i], load);
    };
    {
        std::vector<std::jthread> workers;
        for (unsigned t = 1; t < global.jobs && t < entries.size(); ++t) workers.emplace_back(work);
        work();
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        auto const& result = inputs.results[i];
        if (!global.quiet) printErrors(result.warnings, "warning");
        printErrors(result.errors, "error");
        if (result.ok())
            inputs.pages.push_back({entries[i].source(), &nativePage(result.page.get())});
        else
            inputs.status = exitFailed;
    }
    if (entries.empty()) {
        fmt::print(stderr, "error: no page found: no *.json file in the folders given\n");
        inputs.status = exitFailed;
    }
    inputs.site.jobs = global.jobs;
    if (!options.title.empty()) inputs.site.title = options.title;
    inputs.site.baseUrl = options.baseUrl;
    if (!options.templates.empty()) {
        PageErrors errors;
        inputs.site.templates = SiteTemplates::load(options.templates, errors);
        printErrors(errors, "error");
        if (!errors.empty()) inputs.status = exitFailed;
    }
    return inputs;
}

int finishSiteBuild(SiteReport const& report, SiteInputs const& inputs, SiteCommandOptions const& options,
                    GlobalOptions const& global, char const* what) {
    if (!global.quiet) printErrors(report.warnings, "warning");
    printErrors(report.errors, "error");
    std::size_t const moved = report.warnings.size() - report.unresolvedLinks;
    if (!global.quiet)
        fmt::print(stderr, "{}: {} pages written to {}, {} unresolved links shown as text, {} pages moved\n", what,
                   inputs.pages.size(), refpage::quoted(options.output), report.unresolvedLinks, moved);
    if (inputs.status != exitOk) return inputs.status;
    bool const failed = !report.ok() || (global.strict && !report.warnings.empty());
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
}

}  // namespace refpage
