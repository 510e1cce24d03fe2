#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <fstream>
#include <map>
#include <set>
#include <nlohmann/json.hpp>
#include <reference/property/RecordProducer.hpp>
#include <refpage/format/Lookup.hpp>
#include <refpage/site/Html.hpp>
#include <refpage/site/Site.hpp>
#include <refpage/site/Paths.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/Text.hpp>
#include <thread>
#include <utf8.h>

#include "Mustache.hpp"

namespace refpage {

using namespace reference::property;

namespace {

std::filesystem::path sitePath(std::filesystem::path const& root, std::string_view path) {
    return root / std::filesystem::path(std::u8string(path.begin(), path.end()));
}

/// Makes the folder of every path once, before any file is written; an error names the folder.
void makeFolders(std::filesystem::path const& root, std::vector<std::string> const& paths, PageErrors& errors) {
    std::set<std::filesystem::path> folders{root, sitePath(root, siteAssetFolder)};
    for (auto const& path : paths) folders.insert(sitePath(root, path).parent_path());
    for (auto const& folder : folders) {
        std::error_code ec;
        std::filesystem::create_directories(folder, ec);
        if (ec) errors.push_back({folder.string(), "", fmt::format("cannot make the folder: {}", ec.message())});
    }
}

/// Writes `text` to `root / path`, whose folder exists; an error names the file.
bool writeFile(std::filesystem::path const& root, std::string_view path, std::string const& text, PageErrors& errors) {
    std::filesystem::path const file = sitePath(root, path);
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    if (!out) {
        errors.push_back({file.string(), "", "cannot write"});
        return false;
    }
    return true;
}

}  // namespace

SiteReport planSite(std::span<SitePageInput const> pages) {
    std::vector<std::string> hrefs, names;
    for (auto const& input : pages) {
        hrefs.push_back(utf8(input.page->getHref()));
        names.push_back(sitePageTitle(*input.page));
    }
    PagePathAssignment assignment = assignPagePaths(hrefs, names);
    SiteReport report;
    for (std::size_t i : assignment.derived) {
        std::string const why = hrefs[i].empty()                ? "the page has no Href"
                                : safePagePath(hrefs[i]) ? "another page has the same Href"
                                                         : fmt::format("Href {} is not a safe relative .html path",
                                                                       refpage::quoted(hrefs[i]));
        report.warnings.push_back(
            {pages[i].source, "/Href", fmt::format("{}; written as {}", why, refpage::quoted(assignment.paths[i]))});
    }
    report.paths = std::move(assignment.paths);
    return report;
}

std::vector<SitePageSummary> siteSummaries(std::span<SitePageInput const> pages, std::vector<std::string> const& paths) {
    std::vector<SitePageSummary> summaries;
    summaries.reserve(pages.size());
    for (std::size_t i = 0; i < pages.size(); ++i) {
        RefItem const& page = *pages[i].page;
        summaries.push_back({sitePageTitle(page), paths[i], utf8(page.getPackageName()), utf8(page.getPurpose()),
                             page.getDeprecationStatus() != DeprecationStatus::Current});
    }
    return summaries;
}

DocSet siteDocSet(std::span<SitePageInput const> pages) {
    std::vector<DocSetPage> setPages;
    setPages.reserve(pages.size());
    for (auto const& page : pages) setPages.push_back(DocSetPage{page.source, {}, page.page});
    return DocSet(std::move(setPages));
}

SiteLinkResolver siteLinkResolver(DocSet const& set) {
    return [&set](std::string_view link) -> SiteLink {
        LinkTarget target = set.resolve(link);
        switch (target.kind) {
            case LinkTarget::Kind::Page: return {SiteLink::Kind::Page, target.page, std::move(target.fragment)};
            case LinkTarget::Kind::External: return {SiteLink::Kind::External, 0, {}};
            case LinkTarget::Kind::Unresolved: return {SiteLink::Kind::Unresolved, 0, {}};
            case LinkTarget::Kind::SamePage:  // the page renders fragment-only links itself
            case LinkTarget::Kind::Empty: break;
        }
        return {};
    };
}

std::vector<LookupEntry> siteLookupEntries(DocSet const& set, std::vector<std::string> const& paths) {
    std::vector<LookupEntry> entries = lookupEntries(set);
    for (auto& entry : entries) {
        RefItemLookup const& lookup = entry.lookup;
        entry.lookup = RecordProducer::makeRefItemLookup(lookup.getName(), lookup.getType(), lookup.getPurpose(),
                                                         lookup.isDeprecated(),
                                                         utf8::utf8to16(percentEncode(paths[entry.page])),
                                                         lookup.getFunctionType());
    }
    return entries;
}

std::vector<SearchEntry> siteSearchEntries(std::span<SitePageInput const> pages, std::vector<std::string> const& paths) {
    DocSet const set = siteDocSet(pages);
    std::vector<SearchEntry> entries;
    for (auto const& entry : lookupEntries(set)) {
        RefItemLookup const& lookup = entry.lookup;
        entries.push_back({utf8(lookup.getName()), lookup.getType(), lookup.getFunctionType(), utf8(lookup.getPurpose()),
                           lookup.isDeprecated(), percentEncode(paths[entry.page])});
    }
    return entries;
}

SiteReport buildSite(std::span<SitePageInput const> pages, SiteLinkResolver const& resolve,
                     SiteOptions const& options) {
    SiteReport report = planSite(pages);
    makeFolders(options.output, report.paths, report.errors);
    SiteNavigation const navigation(siteSummaries(pages, report.paths));
    SiteAssetCheck const assetExists = [&options](std::string_view path) {
        std::error_code ec;
        return std::filesystem::is_regular_file(sitePath(options.output, path), ec);
    };
    std::vector<RenderedPage> rendered(pages.size());
    std::vector<PageErrors> pageErrors(pages.size());
    std::atomic<std::size_t> next{0};
    auto work = [&] {
        for (std::size_t i = next++; i < pages.size(); i = next++) {
            try {
                SitePageView const view{i,           report.paths[i], &report.paths, &resolve,    options.title,
                                        options.lang, &navigation,    &assetExists,  options.docset};
                rendered[i] = renderSitePage(*pages[i].page, view, options.templates);
                writeFile(options.output, report.paths[i], rendered[i].html, pageErrors[i]);
                rendered[i].html.clear();
                rendered[i].html.shrink_to_fit();
            } catch (std::exception const& e) {
                pageErrors[i].push_back({pages[i].source, "", fmt::format("cannot render: {}", e.what())});
            }
        }
    };
    unsigned const threads = std::clamp<unsigned>(options.jobs, 1, 256);
    std::vector<std::jthread> workers;
    for (unsigned t = 1; t < threads && t < pages.size(); ++t) workers.emplace_back(work);
    work();
    workers.clear();

    for (std::size_t i = 0; i < pages.size(); ++i) {
        for (auto const& pointer : rendered[i].unresolved)
            report.warnings.push_back({pages[i].source, pointer, "link leads to no page of the set; shown as text"});
        report.unresolvedLinks += rendered[i].unresolved.size();
        for (auto& error : pageErrors[i]) report.errors.push_back(std::move(error));
    }
    SiteIndexView const indexView{&navigation, options.title, options.lang, ""};
    try {
        writeFile(options.output, siteIndexPath, renderSiteIndex(indexView, options.templates), report.errors);
        SiteIndexView notFound = indexView;
        std::string const base = options.baseUrl.empty() || options.baseUrl.ends_with('/') ? options.baseUrl
                                                                                           : options.baseUrl + '/';
        notFound.root = base;
        writeFile(options.output, "404.html", renderSiteNotFound(notFound, options.templates), report.errors);
    } catch (std::exception const& e) {
        report.errors.push_back({"index.html", "", fmt::format("cannot render: {}", e.what())});
    }
    std::string const assets(siteAssetFolder);
    writeFile(options.output, assets + "style.css", options.templates.style, report.errors);
    writeFile(options.output, assets + "search.js", options.templates.script, report.errors);
    writeFile(options.output, assets + "search-rank.js", options.templates.rank, report.errors);
    writeFile(options.output, assets + "site.js", options.templates.behaviour, report.errors);
    std::filesystem::create_directories(sitePath(options.output, searchFolder));
    auto const entries = siteSearchEntries(pages, report.paths);
    writeSearchFiles(entries, [&](std::string_view path, std::string_view bytes) {
        writeFile(options.output, path, std::string(bytes), report.errors);
    });
    return report;
}

}  // namespace refpage
