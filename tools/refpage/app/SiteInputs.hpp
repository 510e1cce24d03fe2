// What the site and docset commands share: their options, the pages named on the
// command line loaded as a doc set on the tool's -j threads, and the report of a build printed.
#pragma once

#include <CLI/CLI.hpp>
#include <refpage/docset/LoadSet.hpp>
#include <refpage/site/Site.hpp>
#include <string>
#include <vector>

#include <refpage/support/FunctionRef.hpp>

#include "Commands.hpp"

namespace refpage {

struct SiteCommandOptions {
    std::vector<std::string> paths;  ///< page files ("-": standard input), or folders searched for *.json
    std::string output;              ///< the site folder, or the NAME.docset folder
    std::string templates;           ///< a folder of replacement templates; empty for the defaults
    std::string title;               ///< the site's title; empty for the default
    std::string baseUrl;             ///< where the site will be served (--base-url); empty for none
    std::string assets;              ///< --assets: where referenced files are; empty: the pages' folder
};

struct SiteInputs {
    std::vector<PageInput> inputs;  ///< every page named, in order
    LoadedSet loaded;               ///< the doc set of the pages that loaded
    SiteOptions site;               ///< templates, title, jobs and load options; the caller sets the output
    int status = exitOk;            ///< exitFailed when a page failed or the templates could not be read
};

/// Builds a site or a docset, as `build` writes it, of the pages `options` names: refuses an
/// output that is or holds an input, loads the pages on `global.jobs` threads, prints what
/// loading said, builds only when every page loaded and the templates were read, then prints
/// the build's warnings (unless quiet), errors and a summary (unless quiet) that says whether
/// the output was replaced. Returns the exit status: failed on any error, or on a warning
/// with --strict.
int runSiteBuild(SiteCommandOptions const& options, GlobalOptions const& global, char const* what,
                 FunctionRef<SiteReport(SiteInputs& inputs)> build);

/// Adds PAGES, -o, --templates, --title, --base-url and --assets.
void addSiteOptions(CLI::App& cli, SiteCommandOptions& options, char const* outputHelp);

}  // namespace refpage
