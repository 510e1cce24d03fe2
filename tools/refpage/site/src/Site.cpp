#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <fstream>
#include <map>
#include <set>
#include <nlohmann/json.hpp>
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

SiteReport planSite(DocSet const& set) {
    std::vector<std::string> hrefs, names;
    for (auto const& page : set.pages()) {
        hrefs.push_back(page.href);
        names.push_back(page.title);
    }
    PagePathAssignment assignment = assignPagePaths(hrefs, names);
    SiteReport report;
    for (std::size_t i : assignment.derived) {
        std::string const why = hrefs[i].empty()                ? "the page has no Href"
                                : safePagePath(hrefs[i]) ? "another page has the same Href"
                                                         : fmt::format("Href {} is not a safe relative .html path",
                                                                       refpage::quoted(hrefs[i]));
        report.warnings.push_back({set.pages()[i].source, "/Href",
                                   fmt::format("{}; written as {}", why, refpage::quoted(assignment.paths[i]))});
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
    return lookupEntries(set, links);
}

std::string siteSearchIndexScript(DocSet const& set, std::vector<std::string> const& paths) {
    std::vector<LookupEntry> const entries = lookupEntries(set);
    nlohmann::json data = nlohmann::json::parse(LookupIndex::inMemory(entries).searchData());
    auto& listed = data["entries"];
    for (std::size_t i = 0; i < entries.size() && i < listed.size(); ++i)
        listed[i]["path"] = percentEncode(paths[entries[i].page]);
    return "window.refpageSearchIndex = " + data.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace) +
           ";\n";
}

SiteReport buildSite(LoadedSet const& loaded, std::span<PageInput const> inputs, SiteOptions const& options) {
    DocSet const& set = loaded.set;
    std::size_t const count = set.pages().size();
    SiteReport report = planSite(set);
    makeFolders(options.output, report.paths, report.errors);
    // Pages are loaded again, rendered, written and released on the threads, in any order;
    // what each says is kept by page and reported in page order.
    std::vector<std::vector<std::string>> unresolved(count);
    std::vector<PageErrors> pageErrors(count);
    std::vector<char> written(count, 0);
    forEachIndex(count, options.jobs, [&](std::size_t i) {
        PageInput const& input = inputs[loaded.inputOf[i]];
        LoadResult const page = loadInput(input, options.load);
        if (!page.ok()) {
            pageErrors[i] = page.errors;
            return;
        }
        try {
            SitePageView const view{i, report.paths[i], &report.paths, &set, options.title, options.lang};
            RenderedPage rendered = renderSitePage(nativePage(page.page.get()), view, options.templates);
            written[i] = writeFile(options.output, report.paths[i], rendered.html, pageErrors[i]) ? 1 : 0;
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
        writeFile(options.output, siteIndexPath, renderSiteIndex(set, report.paths, options), report.errors);
    } catch (std::exception const& e) {
        report.errors.push_back({"index.html", "", fmt::format("cannot render: {}", e.what())});
    }
    std::string const assets(siteAssetFolder);
    writeFile(options.output, assets + "style.css", options.templates.style, report.errors);
    writeFile(options.output, assets + "search.js", options.templates.script, report.errors);
    writeFile(options.output, assets + "search-rank.js", options.templates.rank, report.errors);
    writeFile(options.output, assets + "search-index.js", siteSearchIndexScript(set, report.paths), report.errors);
    return report;
}

}  // namespace refpage
