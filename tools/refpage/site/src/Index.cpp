#include <refpage/site/Page.hpp>
#include <refpage/site/Paths.hpp>

#include "Mustache.hpp"
#include "PageParts.hpp"

namespace refpage {

namespace {

TemplateObject common(SiteIndexView const& view) {
    return TemplateObject{{"lang", std::string(view.lang)},
                          {"root", std::string(view.root)},
                          {"csp", std::string(siteContentSecurityPolicy)},
                          {"siteTitle", std::string(view.siteTitle)}};
}

}  // namespace

std::string renderSiteIndex(SiteIndexView const& view, SiteTemplates const& templates) {
    auto const compiled = templates.compiled();
    SiteNavigation const& nav = *view.navigation;
    TemplateList packages, jumps;
    for (auto const& package : nav.packages()) {
        TemplateList entries;
        for (std::size_t p : package.pages) {
            SitePageSummary const& page = nav.pages()[p];
            TemplateObject item{{"name", page.title},
                                {"segments", nameSegments(page.title)},
                                {"href", relativeUrl(siteIndexPath, page.path)},
                                {"deprecatedEntry", page.deprecated}};
            if (!page.purpose.empty()) item["purpose"] = page.purpose;
            entries.push_back(std::move(item));
        }
        jumps.push_back(TemplateObject{{"name", package.name}, {"id", package.id},
                                       {"count", std::to_string(package.pages.size())}});
        packages.push_back(TemplateObject{{"name", package.name}, {"id", package.id}, {"entries", std::move(entries)}});
    }
    TemplateObject data = common(view);
    data["pageCount"] = std::to_string(nav.pages().size());
    data["packageCount"] = std::to_string(nav.packages().size());
    data["jumps"] = std::move(jumps);
    data["packages"] = std::move(packages);
    return compiled->index().render(TemplateData(data));
}

std::string renderSiteNotFound(SiteIndexView const& view, SiteTemplates const& templates) {
    auto const compiled = templates.compiled();
    return compiled->notFound().render(TemplateData(common(view)));
}

}  // namespace refpage
