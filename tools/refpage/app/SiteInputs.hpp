// What the site and docset commands share: the pages named on the command line,
// loaded, and the report of a build printed.
#pragma once

#include <CLI/CLI.hpp>
#include <refpage/Site.hpp>
#include <string>
#include <vector>

#include "../src/SiteDocSetStandIn.hpp"

namespace refpage {

struct SiteCommandOptions {
    std::vector<std::string> paths;  ///< page files, or folders searched for *.json
    std::string output;              ///< the site folder, or the NAME.docset folder
    std::string templates;           ///< a folder of replacement templates; empty for the defaults
    std::string title;               ///< the site's title; empty for the default
    unsigned jobs = 1;
    bool strict = false;
    bool quiet = false;  ///< no per-link warnings, only the summary
};

/// Loads every page; prints load errors and warnings. `ok` is false when a page failed
/// (or, with strict, warned), or the templates could not be read.
struct SiteInputs {
    site_standin::LoadedPages pages;
    SiteOptions site;
    bool ok = true;
};
SiteInputs loadSiteInputs(SiteCommandOptions const& options);

/// Prints the build's warnings and errors and a summary; returns the exit status.
int finishSiteBuild(SiteReport const& report, SiteInputs const& inputs, SiteCommandOptions const& options,
                    char const* what);

/// Adds the options both commands take.
void addSiteOptions(CLI::App& cli, SiteCommandOptions& options);

}  // namespace refpage
