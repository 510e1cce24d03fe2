#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <map>
#include <nlohmann/json.hpp>
#include <refpage/interchange/InventoryWriter.hpp>
#include <refpage/support/AtomicFile.hpp>
#include <refpage/support/Parallel.hpp>
#include <refpage/site/Html.hpp>
#include <refpage/site/Site.hpp>
#include <refpage/site/Paths.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/Text.hpp>
#include <utf8.h>

#include "Mustache.hpp"

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

std::string renderSiteIndex(DocSet const& set, std::vector<std::string> const& paths, SiteOptions const& options) {
    struct Entry {
        std::string_view title, purpose;
        bool deprecated;
        std::size_t page;
    };
    // Sorted by package, then title, then page order, ignoring ASCII case first.
    std::map<std::pair<int, std::string>, std::pair<std::string, std::vector<Entry>>> packages;
    auto const& pages = set.pages();
    for (std::size_t i = 0; i < pages.size(); ++i) {
        PageSummary const& page = pages[i];
        std::string const& package = page.package;
        auto& slot = packages[{package.empty() ? 1 : 0, asciiLowered(package) + '\0' + package}];
        slot.first = package.empty() ? "Other pages" : package;
        slot.second.push_back({page.title, page.purpose, page.deprecated, i});
    }
    mstch::array packageData;
    for (auto& [key, package] : packages) {
        auto& entries = package.second;
        std::stable_sort(entries.begin(), entries.end(), [](Entry const& a, Entry const& b) {
            return std::pair(asciiLowered(a.title), a.title) < std::pair(asciiLowered(b.title), b.title);
        });
        mstch::array entryData;
        for (auto const& entry : entries) {
            mstch::map item{{"name", std::string(entry.title)},
                            {"href", relativeUrl(siteIndexPath, paths[entry.page])},
                            {"deprecated", entry.deprecated}};
            if (!entry.purpose.empty()) item["purpose"] = std::string(entry.purpose);
            entryData.push_back(std::move(item));
        }
        packageData.push_back(mstch::map{{"name", package.first}, {"entries", std::move(entryData)}});
    }
    mstch::map data{{"lang", options.lang},
                    {"root", std::string()},
                    {"csp", std::string(siteContentSecurityPolicy)},
                    {"siteTitle", options.title},
                    {"pageCount", std::to_string(pages.size())},
                    {"packageCount", std::to_string(packages.size())},
                    {"packages", std::move(packageData)}};
    return renderMustache(options.templates.index, data, options.templates);
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

std::string siteSearchIndexScript(DocSet const& set, std::vector<std::string> const& paths) {
    std::vector<LookupEntry> const entries = siteLookupEntries(set, paths);
    nlohmann::json data = nlohmann::json::parse(LookupIndex::inMemory(entries).searchData());
    auto& listed = data["entries"];
    for (std::size_t i = 0; i < entries.size() && i < listed.size(); ++i)
        listed[i]["path"] = percentEncode(paths[entries[i].page]);
    return "window.refpageSearchIndex = " + data.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace) +
           ";\n";
}

SiteReport writeSite(LoadedSet const& loaded, std::span<PageInput const> inputs, SiteOptions const& options,
                     OutputFolder& out, std::string_view prefix) {
    DocSet const& set = loaded.set;
    std::size_t const count = set.pages().size();
    SiteReport report = planSite(set);
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
            SitePageView const view{i, report.paths[i], &report.paths, &set, options.title, options.lang};
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
    try {
        write(out, prefix, siteIndexPath, renderSiteIndex(set, report.paths, options));
    } catch (std::exception const& e) {
        report.errors.push_back({"index.html", "", fmt::format("cannot render: {}", e.what())});
    }
    std::string const assets(siteAssetFolder);
    write(out, prefix, assets + "style.css", options.templates.style);
    write(out, prefix, assets + "search.js", options.templates.script);
    write(out, prefix, assets + "search-rank.js", options.templates.rank);
    write(out, prefix, assets + "search-index.js", siteSearchIndexScript(set, report.paths));
    write(out, prefix, "objects.inv",
          inventoryBytes(inventoryEntries(siteLookupEntries(set, report.paths)), {options.title, options.version}));
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
