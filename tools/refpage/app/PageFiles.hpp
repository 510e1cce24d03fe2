// The page files named on the command line.
#pragma once

#include <filesystem>
#include <refpage/PageError.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

struct PageFiles {
    std::vector<std::filesystem::path> files;  ///< files as named, and *.json under folders, each folder sorted
    PageErrors missing;                        ///< paths that name nothing
};

/// Files given stay as they are; folders are searched recursively for *.json.
PageFiles collectPageFiles(std::vector<std::string> const& paths);

/// Prints each error on stderr, one line each, as "file:line:column: severity: message [pointer]".
void printErrors(PageErrors const& errors, std::string_view severity);

}  // namespace refpage
