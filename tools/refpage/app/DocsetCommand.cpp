#include <memory>
#include <refpage/SiteDocset.hpp>

#include "../src/SiteDocSetStandIn.hpp"
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
                SiteInputs inputs = loadSiteInputs(*options, global);
                if (inputs.status == exitUsage) return inputs.status;
                auto const& pages = inputs.pages;
                auto const resolve = site_standin::makeResolver(pages);
                auto const writeIndex = [&pages](std::filesystem::path const& file,
                                                 std::vector<std::string> const& paths, PageErrors& errors) {
                    return site_standin::writeIndex(file, pages, paths, errors);
                };
                SiteReport const report = buildDocset(pages, resolve, options->output, *name, inputs.site, writeIndex);
                return finishSiteBuild(report, inputs, *options, global, "docset");
            }};
}

}  // namespace refpage
