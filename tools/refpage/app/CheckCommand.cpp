#include <fmt/format.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <refpage/docset/DocSet.hpp>
#include <refpage/docset/AssetFiles.hpp>
#include <refpage/docset/PageSummary.hpp>
#include <optional>
#include <refpage/format/Check.hpp>
#include <refpage/interchange/ExternalLinks.hpp>
#include <refpage/interchange/InventoryReader.hpp>
#include <string>
#include <vector>

#include "Commands.hpp"
#include "Diagnostics.hpp"
#include "NamedPages.hpp"

namespace refpage {

namespace {

struct CheckOptions {
    std::vector<std::string> paths;
    std::vector<std::string> inventories;  ///< --inventory URL=FILE, as given
    std::string assets;                    ///< --assets: where referenced files are; empty: the pages' folder
};

/// A progress line on stderr, shown only on a terminal, only for long runs, never when quiet.
class Progress {
public:
    Progress(std::size_t total, bool quiet)
        : total_(total), shown_(!quiet && total > 20 && isatty(STDERR_FILENO) != 0) {}
    void step(std::size_t done) const {
        if (shown_ && (done % 10 == 0 || done == total_)) fmt::print(stderr, "\r{}/{} pages", done, total_);
    }
    /// Clears the progress line before other output.
    void clear() const {
        if (shown_) fmt::print(stderr, "\r\033[K");
    }

private:
    std::size_t total_;
    bool shown_;
};

/// The cross-page findings of several pages, printed as warnings (errors with --strict; none
/// when quiet and not strict); the summary's part for them, as ", 3 unresolved links, 0 shared
/// Hrefs, 1 duplicate name".
std::string checkDocSet(DocSet const& set, GlobalOptions const& global, std::size_t& findings) {
    DocSetReport const report = set.check(global.jobs);
    PageErrors where;
    for (auto const& finding : report.findings) where.push_back(finding.where);
    if (global.strict)
        printErrors(where, Severity::Error);
    else if (!global.quiet)
        printErrors(where, Severity::Warning);
    findings = report.findings.size();
    std::string counts;
    for (std::size_t i = 0; i < docSetIssueCount; ++i) {
        auto const issue = static_cast<DocSetIssue>(i);
        counts += fmt::format(", {} {}", report.count(issue), issueLabel(issue, report.count(issue)));
    }
    return counts;
}

/// The inventories that --inventory URL=FILE names, read before any page; on a bad option
/// or inventory, `status` is set (2 or 1) and the reason printed.
ExternalInventories readInventories(std::vector<std::string> const& options, int& status) {
    ExternalInventories inventories;
    for (auto const& option : options) {
        std::string usage;
        std::optional<InventoryOption> const parsed = parseInventoryOption(option, usage);
        if (!parsed) {
            fmt::print(stderr, "refpage: {}\n", usage);
            status = exitUsage;
            return {};
        }
        try {
            inventories.add(parsed->baseUrl, readInventoryFile(parsed->file), parsed->file);
        } catch (InventoryError const& e) {
            printErrors({e.where()}, Severity::Error);
            status = exitFailed;
            return {};
        }
    }
    return inventories;
}

/// The links of the pages that passed into a known inventory's site that name nothing it
/// lists, printed as the set's findings are; the summary's part, as ", 2 unresolved external links".
std::string checkExternalLinks(DocSet const& set, ExternalInventories const& inventories, GlobalOptions const& global,
                               std::size_t& findings) {
    PageErrors where;
    for (auto const& page : set.pages())
        for (auto& finding : externalLinkFindings(page, inventories)) where.push_back(std::move(finding));
    if (global.strict)
        printErrors(where, Severity::Error);
    else if (!global.quiet)
        printErrors(where, Severity::Warning);
    findings = where.size();
    return fmt::format(", {} unresolved external link{}", findings, findings == 1 ? "" : "s");
}

int check(CheckOptions const& options, GlobalOptions const& global) {
    auto const start = std::chrono::steady_clock::now();
    std::vector<std::string> const& paths = options.paths;
    if (refuseStdinNamedTwice(paths)) return exitUsage;
    int inventoryStatus = exitOk;
    ExternalInventories const inventories = readInventories(options.inventories, inventoryStatus);
    if (inventoryStatus != exitOk) return inventoryStatus;
    std::vector<PageInput> const inputs = namedInputs(paths);
    LoadOptions const load{global.strict};
    Progress const progress(inputs.size(), global.quiet);
    // Pages are checked on global.jobs threads and reported in order. Several pages are also
    // checked as a set, and their links against the inventories given, from the summaries of
    // the pages that passed, each made on the thread that checked its page, which is released there.
    bool const asSet = inputs.size() > 1;
    bool const summarized = true;  // every page's files are looked for, alone or in a set
    std::vector<CheckReport> reports(inputs.size());
    std::vector<std::optional<PageSummary>> summaries(inputs.size());
    std::size_t done = 0;
    std::mutex progressMutex;
    checkEach(inputs, global.jobs, load, summarized, [&](std::size_t i, CheckReport&& report, LoadResult const* page) {
        summaries[i].reset();
        if (page != nullptr) summaries[i] = summarize(inputs[i].source, nativePage(page->page.get()));
        reports[i] = std::move(report);
        std::lock_guard const lock(progressMutex);
        progress.step(++done);
    });
    progress.clear();
    std::size_t failed = 0;
    for (auto const& report : reports) {
        if (!global.quiet) printErrors(report.warnings, Severity::Warning);
        if (!report.passed()) {
            ++failed;
            printErrors(report.failures, Severity::Error);
        }
    }
    std::size_t findings = 0;
    std::vector<PageSummary> pages;
    for (auto& summary : summaries)
        if (summary) pages.push_back(std::move(*summary));
    DocSet const set(std::move(pages));
    std::string setCounts = asSet ? checkDocSet(set, global, findings) : std::string();
    std::size_t externalFindings = 0;
    if (!inventories.empty()) setCounts += checkExternalLinks(set, inventories, global, externalFindings);
    AssetFolder const assets(options.assets.empty() ? defaultAssetFolder(paths) : std::filesystem::path(options.assets));
    PageErrors const files = fileFindings(set, assets, global.jobs);
    if (global.strict)
        printErrors(files, Severity::Error);
    else if (!global.quiet)
        printErrors(files, Severity::Warning);
    if (!files.empty()) setCounts += fmt::format(", {} missing file{}", files.size(), files.size() == 1 ? "" : "s");
    std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - start;
    if (!global.quiet)
        fmt::print("{} pages, {} failed{} ({:.2f} s)\n", inputs.size(), failed, setCounts, elapsed.count());
    if (inputs.empty()) {
        fmt::print(stderr, "error: no page found: no *.json file in the folders given\n");
        return exitFailed;
    }
    bool const setFailed = global.strict && findings + externalFindings + files.size() != 0;
    return failed == 0 && !setFailed ? exitOk : exitFailed;
}

}  // namespace

Command addCheckCommand(CLI::App& app, GlobalOptions const& global) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App* cli = app.add_subcommand(
        "check",
        "Load pages through the host, read them back through the host and native getters, round-trip "
        "them through JSON and copy(), and report every difference; several pages are also checked as a set "
        "(relative links that lead to no page, pages sharing an Href, entity names documented twice)");
    cli->add_option("PATH", options->paths, "Page files (- for standard input), or folders searched for *.json")
        ->required();
    cli->add_option("--inventory", options->inventories,
                    "URL=FILE: FILE is the Sphinx inventory (objects.inv) of the site at URL; a link under URL must "
                    "name something it lists (repeatable; nothing is fetched)");
    cli->add_option("--assets", options->assets,
                    "Folder of the files pages reference (thumbnails, images), relative to the doc set's root like "
                    "links (default: the first folder of pages given, or the folder of the first page file)");
    return {cli, [options, &global] { return check(*options, global); }};
}

}  // namespace refpage
