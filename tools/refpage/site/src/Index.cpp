#include <refpage/site/Page.hpp>
#include <refpage/site/Paths.hpp>

#include "Mustache.hpp"
#include "PageParts.hpp"

namespace refpage {

namespace {

TemplateData common(SiteIndexView const& view) {
    TemplateData data(TemplateData::type::object);
    TemplateNode(data)
        .set("lang", std::string(view.lang))
        .set("root", std::string(view.root))
        .set("csp", std::string(siteContentSecurityPolicy))
        .set("siteTitle", std::string(view.siteTitle));
    return data;
}

}  // namespace

std::string renderSiteIndex(SiteIndexView const& view, SiteTemplates const& templates) {
    auto const compiled = templates.compiled();
    SiteNavigation const& nav = *view.navigation;
    TemplateData data = common(view);
    TemplateNode top(data);
    top.set("pageCount", std::to_string(nav.pages().size())).set("packageCount", std::to_string(nav.packages().size()));
    TemplateNode jumps = top.list("jumps");
    for (auto const& package : nav.packages())
        jumps.append().set("name", package.name).set("id", package.id).set("count", std::to_string(package.pages.size()));
    TemplateNode packages = top.list("packages");
    for (auto const& package : nav.packages()) {
        TemplateNode out = packages.append();
        out.set("name", package.name).set("id", package.id);
        TemplateNode entries = out.list("entries");
        for (std::size_t p : package.pages) {
            SitePageSummary const& page = nav.pages()[p];
            TemplateNode item = entries.append();
            item.set("name", page.title)
                .set("href", relativeUrl(siteIndexPath, page.path))
                .set("deprecatedEntry", page.deprecated)
                .setIf("purpose", page.purpose);
            setSegments(item, "segments", page.title);
        }
    }
    return compiled->index().render(data);
}

std::string renderSiteNotFound(SiteIndexView const& view, SiteTemplates const& templates) {
    auto const compiled = templates.compiled();
    return compiled->notFound().render(common(view));
}

}  // namespace refpage
