// What the site and docset commands share: their options, the pages named on the
// command line loaded on the tool's -j threads, and the report of a build printed.
#pragma once

#include <CLI/CLI.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/site/Site.hpp>
#include <string>
#include <vector>

#include "Commands.hpp"

namespace refpage {

struct SiteCommandOptions {
    std::vector<std::string> paths;  ///< page files ("-": standard input), or folders searched for *.json
    std::string output;              ///< the site folder, or the NAME.docset folder
    std::string templates;           ///< a folder of replacement templates; empty for the defaults
    std::string title;               ///< the site's title; empty for the default
    std::string baseUrl;             ///< where the site will be served (--base-url); empty for none
};

struct SiteInputs {
    std::vector<LoadResult> results;   ///< one per page entry; the host objects keep the pages alive
    std::vector<SitePageInput> pages;  ///< the pages that loaded, in entry order
    SiteOptions site;                  ///< templates, title and jobs; the caller sets the output
    int status = exitOk;               ///< exitFailed when a page failed or the templates could not be read
};

/// Loads every page on `global.jobs` threads, in entry order; prints load errors and
/// (unless quiet) warnings.
SiteInputs loadSiteInputs(SiteCommandOptions const& options, GlobalOptions const& global);

/// Prints the build's warnings (unless quiet), errors and a summary (unless quiet);
/// returns the exit status: failed on any error, or on a warning with --strict.
int finishSiteBuild(SiteReport const& report, SiteInputs const& inputs, SiteCommandOptions const& options,
                    GlobalOptions const& global, char const* what);

/// Adds PAGES, -o, --templates, --title and --base-url.
void addSiteOptions(CLI::App& cli, SiteCommandOptions& options, char const* outputHelp);

}  // namespace refpage
