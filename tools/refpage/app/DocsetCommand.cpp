#include <memory>
#include <refpage/site/DocsetBundle.hpp>

#include "Commands.hpp"
#include "SiteInputs.hpp"

namespace refpage {

Command addDocsetCommand(CLI::App& app, GlobalOptions const& global) {
    auto options = std::make_shared<SiteCommandOptions>();
    auto name = std::make_shared<std::string>();
    CLI::App* cli = app.add_subcommand("docset", "Write the pages' HTML site as an offline docset with its index");
    addSiteOptions(*cli, *options, "The docset folder, NAME.docset (created when missing)");
    cli->add_option("--name", *name, "The docset's name")->required();
    return {cli, [options, name, &global] {
                return runSiteBuild(*options, global, "docset", [&](SiteInputs& inputs) {
                    return buildDocset(inputs.loaded, inputs.inputs, options->output, *name, inputs.site);
                });
            }};
}

}  // namespace refpage
