#include <fmt/format.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <memory>
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

int check(CheckOptions const& options) {
    auto const start = std::chrono::steady_clock::now();
    PageFiles const pages = collectPageFiles(options.paths);
    printErrors(pages.missing, "error");
    LoadOptions const load{options.strict};
    Progress const progress(pages.files.size());
    std::size_t failed = 0;
    for (std::size_t i = 0; i < pages.files.size(); ++i) {
        auto const& file = pages.files[i];
        std::string text;
        PageError readError;
        CheckReport report;
        if (readTextFile(file, text, readError))
            report = checkOwnedPage(std::move(text), file.string(), load);
        else
            report.failures.push_back(readError);
        if (!report.warnings.empty() || !report.passed()) progress.clear();
        printErrors(report.warnings, "warning");
        if (!report.passed()) {
            ++failed;
            printErrors(report.failures, "error");
        }
        progress.step(i + 1);
    }
    progress.clear();
    std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - start;
    fmt::print("{} pages, {} failed ({:.2f} s)\n", pages.files.size(), failed, elapsed.count());
    return failed == 0 && pages.missing.empty() ? exitOk : exitFailed;
}

}  // namespace

Command addCheckCommand(CLI::App& app) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App* cli = app.add_subcommand(
        "check",
        "Load pages through the host, read them back through the host and native getters, round-trip "
        "them through JSON and copy(), and report every difference");
    cli->add_option("PATH", options->paths, "Page files, or folders searched recursively for *.json")->required();
    cli->add_flag("--strict", options->strict, "Treat warnings as errors");
    return {cli, [options] { return check(*options); }};
}

}  // namespace refpage
