#include <memory>
#include <refpage/SiteDocset.hpp>

#include "Commands.hpp"
#include "SiteInputs.hpp"

namespace refpage {

Command addDocsetCommand(CLI::App& app) {
    auto options = std::make_shared<SiteCommandOptions>();
    auto name = std::make_shared<std::string>();
    CLI::App* cli = app.add_subcommand("docset", "Write the pages' HTML site as an offline docset with its index");
    addSiteOptions(*cli, *options);
    cli->add_option("-o,--output", options->output, "The docset folder, NAME.docset (created when missing)")
        ->required();
    cli->add_option("--name", *name, "The docset's name")->required();
    return {cli, [options, name] {
                SiteInputs inputs = loadSiteInputs(*options);
                auto const& pages = inputs.pages.inputs;
                auto const resolve = site_standin::makeResolver(pages);
                auto const writeIndex = [&pages](std::filesystem::path const& file,
                                                 std::vector<std::string> const& paths, PageErrors& errors) {
                    return site_standin::writeIndex(file, pages, paths, errors);
                };
                SiteReport const report =
                    buildDocset(pages, resolve, options->output, *name, inputs.site, writeIndex);
                return finishSiteBuild(report, inputs, *options, "docset");
            }};
}

}  // namespace refpage
