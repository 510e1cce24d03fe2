#include <memory>

#include "Commands.hpp"
#include "SiteInputs.hpp"

namespace refpage {

Command addSiteCommand(CLI::App& app, GlobalOptions const& global) {
    auto options = std::make_shared<SiteCommandOptions>();
    CLI::App* cli = app.add_subcommand("site", "Write a static HTML site of the pages, with an index and search");
    addSiteOptions(*cli, *options, "Folder of the site (created when missing)");
    return {cli, [options, &global] {
                return runSiteBuild(*options, global, "site", [&](SiteInputs& inputs) {
                    inputs.site.output = options->output;
                    return buildSite(inputs.loaded, inputs.inputs, inputs.site);
                });
            }};
}

}  // namespace refpage
