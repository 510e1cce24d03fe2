#include <memory>

#include "Commands.hpp"
#include "SiteInputs.hpp"

namespace refpage {

Command addSiteCommand(CLI::App& app) {
    auto options = std::make_shared<SiteCommandOptions>();
    CLI::App* cli = app.add_subcommand("site", "Write a static HTML site of the pages, with an index and search");
    addSiteOptions(*cli, *options);
    cli->add_option("-o,--output", options->output, "Folder of the site (created when missing)")->required();
    return {cli, [options] {
                SiteInputs inputs = loadSiteInputs(*options);
                inputs.site.output = options->output;
                auto const resolve = site_standin::makeResolver(inputs.pages.inputs);
                SiteReport const report = buildSite(inputs.pages.inputs, resolve, inputs.site);
                return finishSiteBuild(report, inputs, *options, "site");
            }};
}

}  // namespace refpage
