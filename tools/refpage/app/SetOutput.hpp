// What the commands that write one file from a set of pages share (index, inventory):
// the output checked before any page is read, the set loaded with what it said printed,
// and the summary line of the file written.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <refpage/docset/LoadSet.hpp>
#include <string>
#include <vector>

#include "Commands.hpp"

namespace refpage {

struct SetForFile {
    std::size_t pages = 0;  ///< inputs named
    LoadedSet loaded;       ///< every page loaded
    std::chrono::steady_clock::time_point start;
};

/// Refuses an `output` that is or lies in an input, or that is no file to replace (throws
/// FileError), then loads the pages `paths` names and prints what loading said. Empty, with
/// the reason printed, when no page was found or a page failed: then `output` stays as it was.
std::optional<SetForFile> loadSetForFile(std::vector<std::string> const& paths, std::string const& output,
                                         GlobalOptions const& global);

/// "N pages, M entries written to FILE (T s)" on standard output, unless quiet.
void printWritten(SetForFile const& set, std::size_t entries, std::string const& output, GlobalOptions const& global);

}  // namespace refpage
