#include <memory>
#include <refpage/site/DocsetBundle.hpp>

#include <refpage/docset/LookupIndex.hpp>
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
                DocSet const set = siteDocSet(pages);
                SiteLinkResolver const resolve = siteLinkResolver(set);
                // The docset's index is the lookup index, its paths the pages' places in the site.
                auto const writeIndex = [&set](std::filesystem::path const& file,
                                               std::vector<std::string> const& paths, PageErrors& errors) {
                    try {
                        writeLookupIndex(file, siteLookupEntries(set, paths));
                        return true;
                    } catch (std::exception const& e) {
                        errors.push_back(PageError{file.string(), {}, e.what()});
                        return false;
                    }
                };
                SiteReport const report = buildDocset(pages, resolve, options->output, *name, inputs.site, writeIndex);
                return finishSiteBuild(report, inputs, *options, global, "docset");
            }};
}

}  // namespace refpage
