#include <fmt/format.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <refpage/docset/DocSet.hpp>
#include <refpage/docset/PageSummary.hpp>
#include <optional>
#include <refpage/format/Check.hpp>
#include <string>
#include <vector>

#include "Commands.hpp"
#include "Diagnostics.hpp"
#include "NamedPages.hpp"

namespace refpage {

namespace {

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
    DocSetReport const report = set.check();
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

int check(std::vector<std::string> const& paths, GlobalOptions const& global) {
    auto const start = std::chrono::steady_clock::now();
    if (std::string const usage = stdinNamedTwice(paths); !usage.empty()) {
        fmt::print(stderr, "refpage: {}\n", usage);
        return exitUsage;
    }
    std::vector<PageInput> const inputs = namedInputs(paths);
    LoadOptions const load{global.strict};
    Progress const progress(inputs.size(), global.quiet);
    // Pages are checked on global.jobs threads and reported in order. Several pages are also
    // checked as a set, from the summaries of the pages that passed, each made on the thread
    // that checked its page, which is released there.
    bool const asSet = inputs.size() > 1;
    std::vector<CheckReport> reports(inputs.size());
    std::vector<std::optional<PageSummary>> summaries(inputs.size());
    std::size_t done = 0;
    std::mutex progressMutex;
    checkEach(inputs, global.jobs, load, asSet, [&](std::size_t i, CheckReport&& report, LoadResult const* page) {
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
    std::string setCounts;
    if (asSet) {
        std::vector<PageSummary> pages;
        for (auto& summary : summaries)
            if (summary) pages.push_back(std::move(*summary));
        setCounts = checkDocSet(DocSet(std::move(pages)), global, findings);
    }
    std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - start;
    if (!global.quiet)
        fmt::print("{} pages, {} failed{} ({:.2f} s)\n", inputs.size(), failed, setCounts, elapsed.count());
    if (inputs.empty()) {
        fmt::print(stderr, "error: no page found: no *.json file in the folders given\n");
        return exitFailed;
    }
    bool const setFailed = global.strict && findings != 0;
    return failed == 0 && !setFailed ? exitOk : exitFailed;
}

}  // namespace

Command addCheckCommand(CLI::App& app, GlobalOptions const& global) {
    auto paths = std::make_shared<std::vector<std::string>>();
    CLI::App* cli = app.add_subcommand(
        "check",
        "Load pages through the host, read them back through the host and native getters, round-trip "
        "them through JSON and copy(), and report every difference; several pages are also checked as a set "
        "(relative links that lead to no page, pages sharing an Href, entity names documented twice)");
    cli->add_option("PATH", *paths, "Page files (- for standard input), or folders searched for *.json")->required();
    return {cli, [paths, &global] { return check(*paths, global); }};
}

}  // namespace refpage
