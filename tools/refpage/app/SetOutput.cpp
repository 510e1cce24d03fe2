#include "SetOutput.hpp"

#include <fmt/format.h>

#include <refpage/support/AtomicFile.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/OutputOverlap.hpp>

#include "Diagnostics.hpp"

namespace refpage {

std::optional<SetForFile> loadSetForFile(std::vector<std::string> const& paths, std::string const& output,
                                         GlobalOptions const& global) {
    SetForFile set;
    set.start = std::chrono::steady_clock::now();
    if (auto const overlap = outputOverlapsInput(output, paths)) throw FileError(*overlap);
    requireReplaceableFile(output);  // a device or folder at -o is refused before pages are read
    std::vector<PageInput> const inputs = namedInputs(paths);
    set.pages = inputs.size();
    set.loaded = loadDocSet(inputs, global.jobs, LoadOptions{global.strict}, SummaryLinks::Left);
    printLoadDiagnostics(set.loaded, global.quiet);
    if (inputs.empty()) {
        fmt::print(stderr, "error: no page found: no *.json file in the folders given\n");
        return std::nullopt;
    }
    if (set.loaded.failed != 0) {
        fmt::print(stderr, "{} pages, {} failed: {} left as it was\n", inputs.size(), set.loaded.failed,
                   displayable(output));
        return std::nullopt;
    }
    return set;
}

void printWritten(SetForFile const& set, std::size_t entries, std::string const& output, GlobalOptions const& global) {
    std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - set.start;
    if (!global.quiet)
        fmt::print("{} pages, {} entries written to {} ({:.2f} s)\n", set.pages, entries, displayable(output),
                   elapsed.count());
}

}  // namespace refpage
