#include <fmt/format.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <new>
#include <refpage/PageCheck.hpp>
#include <refpage/PageSource.hpp>
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

/// The verdict on one entry: read it, then check it. An entry that cannot be read, or
/// that runs out of memory, fails with the reason.
CheckReport checkEntry(PageEntry const& entry, LoadOptions const& load) {
    CheckReport report;
    try {
        std::string text;
        PageError readError;
        if (readPageEntry(entry, text, readError)) return checkOwnedPage(std::move(text), entry.source(), load);
        report.failures.push_back(std::move(readError));
    } catch (std::bad_alloc const&) {
        report = CheckReport{};
        report.failures.push_back(PageError{entry.source(), {}, "out of memory"});
    }
    return report;
}

int check(std::vector<std::string> const& paths, GlobalOptions const& global) {
    auto const start = std::chrono::steady_clock::now();
    if (std::string const usage = stdinNamedTwice(paths); !usage.empty()) {
        fmt::print(stderr, "refpage: {}\n", usage);
        return exitUsage;
    }
    std::vector<PageEntry> const entries = findPageEntries(paths);
    LoadOptions const load{global.strict};
    Progress const progress(entries.size(), global.quiet);
    std::size_t failed = 0;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        CheckReport const report = checkEntry(entries[i], load);
        bool const warn = !global.quiet && !report.warnings.empty();
        if (warn || !report.passed()) progress.clear();
        if (warn) printErrors(report.warnings, "warning");
        if (!report.passed()) {
            ++failed;
            printErrors(report.failures, "error");
        }
        progress.step(i + 1);
    }
    progress.clear();
    std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - start;
    if (!global.quiet) fmt::print("{} pages, {} failed ({:.2f} s)\n", entries.size(), failed, elapsed.count());
    if (entries.empty()) {
        fmt::print(stderr, "error: no page found: no *.json file in the folders given\n");
        return exitFailed;
    }
    return failed == 0 ? exitOk : exitFailed;
}

}  // namespace

Command addCheckCommand(CLI::App& app, GlobalOptions const& global) {
    auto paths = std::make_shared<std::vector<std::string>>();
    CLI::App* cli = app.add_subcommand(
        "check",
        "Load pages through the host, read them back through the host and native getters, round-trip "
        "them through JSON and copy(), and report every difference");
    cli->add_option("PATH", *paths, "Page files (- for standard input), or folders searched for *.json")->required();
    return {cli, [paths, &global] { return check(*paths, global); }};
}

}  // namespace refpage
