#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <map>
#include <unordered_set>
#include <refpage/docset/AssetFiles.hpp>
#include <refpage/interchange/InventoryWriter.hpp>
#include <refpage/site/Assets.hpp>
#include <refpage/support/AtomicFile.hpp>
#include <refpage/support/Parallel.hpp>
#include <refpage/site/Html.hpp>
#include <refpage/site/Site.hpp>
#include <refpage/site/Paths.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/Text.hpp>
#include <utf8.h>


namespace refpage {

using namespace reference::property;

namespace {

/// Writes `text` as `prefix + path` into `out`; false once any write failed (the folder keeps the first failure).
bool write(OutputFolder& out, std::string_view prefix, std::string_view path, std::string_view text) {
    std::string full(prefix);
    full += path;
    return out.writeFile(full, text);
}

}  // namespace

SiteReport planSite(DocSet const& set) {
    std::vector<std::string> hrefs, names;
    for (auto const& page : set.pages()) {
        hrefs.push_back(page.href);
        names.push_back(page.title);
    }
    PagePathAssignment assignment = assignPagePaths(hrefs, names);
    SiteReport report;
    for (std::size_t k = 0; k < assignment.derived.size(); ++k) {
        std::size_t const i = assignment.derived[k];
        report.warnings.push_back({set.pages()[i].source, "/Href",
                                   fmt::format("{}; written as {}", refusalReason(hrefs[i], assignment.refusals[k]),
                                               refpage::quoted(assignment.paths[i]))});
    }
    report.movedPages = assignment.derived.size();
    report.paths = std::move(assignment.paths);
    return report;
}

std::vector<SitePageSummary> siteSummaries(DocSet const& set, std::vector<std::string> const& paths) {
    std::vector<SitePageSummary> summaries;
    summaries.reserve(set.pages().size());
    for (std::size_t i = 0; i < set.pages().size(); ++i) {
        PageSummary const& page = set.pages()[i];
        summaries.push_back({page.title, paths[i], page.package, page.purpose, page.deprecated});
    }
    return summaries;
}

std::vector<LookupEntry> siteLookupEntries(DocSet const& set, std::vector<std::string> const& paths) {
    std::vector<std::string> links;
    links.reserve(paths.size());
    for (auto const& path : paths) links.push_back(percentEncode(path));
    std::vector<LookupEntry> entries = lookupEntries(set, links);
    // What is published names a page by its place in the site, never by a file of the machine that built it.
    for (auto& entry : entries) entry.source = paths[entry.page];
    return entries;
}

std::vector<SearchEntry> siteSearchEntries(DocSet const& set, std::vector<std::string> const& paths) {
    std::size_t count = 0;
    for (auto const& page : set.pages()) count += page.entries.size();
    std::vector<SearchEntry> entries;
    entries.reserve(count);
    for (std::size_t p = 0; p < set.pages().size(); ++p) {
        PageSummary const& page = set.pages()[p];
        std::string const link = percentEncode(paths[p]);
        for (auto const& entry : page.entries)
            entries.push_back({entry.name, entry.type, entry.functionType,
                               entry.purpose.empty() ? page.purpose : entry.purpose, page.deprecated,
                               entryLink(link, entry.anchor)});
    }
    return entries;
}

std::vector<InventoryEntry> siteInventoryEntries(std::span<SearchEntry const> entries) {
    std::vector<InventoryEntry> out;
    out.reserve(entries.size());
    for (auto const& entry : entries) out.push_back({entry.name, entry.entityType, entry.path});
    return out;
}

SiteReport writeSite(LoadedSet const& loaded, std::span<PageInput const> inputs, SiteOptions const& options,
                     OutputFolder& out, std::string_view prefix) {
    DocSet const& set = loaded.set;
    std::size_t const count = set.pages().size();
    SiteReport report = planSite(set);
    // Released once the index is written: the search data that follows needs the memory more.
    auto navigation = std::make_optional<SiteNavigation>(siteSummaries(set, report.paths));
    std::unordered_set<std::string> published;
    if (options.assets) {
        AssetFolder const assets(*options.assets);
        for (auto& warning : fileFindings(set, assets, options.jobs)) report.warnings.push_back(std::move(warning));
        published = publishAssets(set, report.paths, assets, out, prefix, report.warnings);
    }
    // A page shows a referenced file only when it was copied; otherwise its alt text, never a broken image.
    SiteAssetCheck const assetExists = [&published](std::string_view path) {
        return published.contains(std::string(path));
    };
    // Pages are loaded again, rendered, written and released on the threads, in any order;
    // what each says is kept by page and reported in page order.
    std::vector<std::vector<std::string>> unresolved(count);
    std::vector<PageErrors> pageErrors(count);
    std::vector<char> written(count, 0);
    forEachIndex(count, options.jobs, [&](std::size_t i) {
        if (out.failed()) return;  // the build is lost: its first failure says why
        PageInput const& input = inputs[loaded.inputOf[i]];
        LoadResult const page = loadInput(input, options.load);
        if (!page.ok()) {
            pageErrors[i] = page.errors;
            return;
        }
        try {
            SitePageView const view{i,           report.paths[i], &report.paths, &set,          options.title,
                                    options.lang, &*navigation,   &assetExists,  options.docset};
            RenderedPage rendered = renderSitePage(nativePage(page.page.get()), view, options.templates);
            written[i] = write(out, prefix, report.paths[i], rendered.html) ? 1 : 0;
            unresolved[i] = std::move(rendered.unresolved);
        } catch (std::exception const& e) {
            pageErrors[i].push_back({input.source, "", fmt::format("cannot render: {}", e.what())});
        }
    });
    for (std::size_t i = 0; i < count; ++i) {
        for (auto const& pointer : unresolved[i])
            report.warnings.push_back({set.pages()[i].source, pointer, "link leads to no page of the set; shown as text"});
        report.unresolvedLinks += unresolved[i].size();
        report.pagesWritten += written[i];
        for (auto& error : pageErrors[i]) report.errors.push_back(std::move(error));
    }
    SiteIndexView const indexView{&*navigation, options.title, options.lang, ""};
    try {
        write(out, prefix, siteIndexPath, renderSiteIndex(indexView, options.templates));
        SiteIndexView notFound = indexView;
        std::string const base = options.baseUrl.empty() || options.baseUrl.ends_with('/') ? options.baseUrl
                                                                                            : options.baseUrl + '/';
        notFound.root = base;  // borrowed: `base` lives until the page is rendered
        write(out, prefix, siteNotFoundPath, renderSiteNotFound(notFound, options.templates));
    } catch (std::exception const& e) {
        report.errors.push_back({"index.html", "", fmt::format("cannot render: {}", e.what())});
    }
    navigation.reset();
    std::string const assets(siteAssetFolder);
    write(out, prefix, assets + "style.css", options.templates.style);
    write(out, prefix, assets + "search.js", options.templates.script);
    write(out, prefix, assets + "search-rank.js", options.templates.rank);
    write(out, prefix, assets + "site.js", options.templates.behaviour);
    std::vector<SearchEntry> const search = siteSearchEntries(set, report.paths);
    writeSearchFiles(search, [&](std::string_view path, std::string_view bytes) { write(out, prefix, path, bytes); });
    write(out, prefix, "objects.inv", inventoryBytes(siteInventoryEntries(search), {options.title, options.version}));
    return report;
}

void commitSite(OutputFolder& out, SiteReport& report) {
    if (out.failed()) report.errors.push_back({out.target().string(), "", out.failure()});
    if (!report.ok()) return;
    try {
        if (std::string const warning = out.commit(); !warning.empty())
            report.warnings.push_back({out.target().string(), "", warning});
        report.committed = true;
    } catch (FileError const& e) {
        report.errors.push_back({out.target().string(), "", e.what()});
    }
}

SiteReport buildSite(LoadedSet const& loaded, std::span<PageInput const> inputs, SiteOptions const& options) {
    OutputFolder out(options.output);
    SiteReport report = writeSite(loaded, inputs, options, out, "");
    commitSite(out, report);
    return report;
}

}  // namespace refpage
