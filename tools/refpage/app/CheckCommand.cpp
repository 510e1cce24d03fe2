#include <fmt/format.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <atomic>
#include <memory>
#include <mutex>
#include <refpage/DocSet.hpp>
#include <refpage/ParallelLoad.hpp>
#include <refpage/PageCheck.hpp>
#include <refpage/PageLoader.hpp>
#include <string>
#include <vector>

#include "Commands.hpp"
#include "PageFiles.hpp"

namespace refpage {

namespace {

struct CheckOptions {
    std::vector<std::string> paths;
    bool strict = false;
    unsigned jobs = 0;  ///< threads checking pages; 0: one per core
};

/// A progress line on stderr, shown only on a terminal and only for long runs.
class Progress {
public:
    explicit Progress(std::size_t total) : total_(total), shown_(total > 20 && isatty(STDERR_FILENO) != 0) {}
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

/// The cross-page findings of several pages, printed as warnings (errors with --strict); the
/// summary's part for them, as ", 3 unresolved links, 0 shared Hrefs, 1 duplicate name".
std::string checkDocSet(std::span<PageInput const> inputs, std::span<LoadResult const> loaded, bool strict,
                        std::size_t& findings) {
    DocSetReport const report = DocSet(docSetPages(inputs, loaded)).check();
    for (auto const& finding : report.findings)
        fmt::print(stderr, "{}{}\n", strict ? "error: " : "warning: ", finding.where.describe());
    findings = report.findings.size();
    std::string counts;
    for (std::size_t i = 0; i < docSetIssueCount; ++i) {
        auto const issue = static_cast<DocSetIssue>(i);
        counts += fmt::format(", {} {}", report.count(issue), issueLabel(issue, report.count(issue)));
    }
    return counts;
}

int check(CheckOptions const& options) {
    auto const start = std::chrono::steady_clock::now();
    PageFiles const pages = collectPageFiles(options.paths);
    printErrors(pages.missing, "error: ");
    LoadOptions const load{options.strict};
    Progress const progress(pages.files.size());
    // Several pages are also checked as a set, from a second load of each page that passed.
    bool const asSet = pages.files.size() > 1;
    std::vector<PageInput> const inputs = fileInputs(pages.files);
    std::vector<CheckReport> reports(inputs.size());
    std::vector<LoadResult> loaded(inputs.size());
    std::atomic<std::size_t> done{0};
    std::mutex progressMutex;
    forEachIndex(inputs.size(), options.jobs, [&](std::size_t i) {
        std::string text;
        PageError readError;
        if (readTextFile(inputs[i].source, text, readError)) {
            reports[i] = checkPage(text, inputs[i].source, load);
            if (asSet && reports[i].passed()) loaded[i] = loadPage(text, inputs[i].source, load);
        } else {
            reports[i].failures.push_back(readError);
        }
        std::lock_guard const lock(progressMutex);
        progress.step(++done);
    });
    progress.clear();
    std::size_t failed = 0;
    for (auto const& report : reports) {
        printErrors(report.warnings, "warning: ");
        if (!report.passed()) {
            ++failed;
            printErrors(report.failures, "FAIL ");
        }
    }
    std::size_t findings = 0;
    std::string const setCounts = asSet ? checkDocSet(inputs, loaded, options.strict, findings) : std::string();
    loaded.clear();
    std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - start;
    fmt::print("{} pages, {} failed{} ({:.2f} s)\n", pages.files.size(), failed, setCounts, elapsed.count());
    bool const setFailed = options.strict && findings != 0;
    return failed == 0 && pages.missing.empty() && !setFailed ? exitOk : exitFailed;
}

}  // namespace

Command addCheckCommand(CLI::App& app) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App* cli = app.add_subcommand(
        "check",
        "Load pages through the host, read them back through the host and native getters, round-trip "
        "them through JSON and copy(), and report every difference; several pages are also checked as a set "
        "(relative links that lead to no page, pages sharing an Href, entity names documented twice)");
    cli->add_option("PATH", options->paths, "Page files, or folders searched recursively for *.json")->required();
    cli->add_flag("--strict", options->strict, "Treat warnings as errors");
    cli->add_option("-j,--jobs", options->jobs, "Threads checking pages (default: one per core)");
    return {cli, [options] { return check(*options); }};
}

}  // namespace refpage
