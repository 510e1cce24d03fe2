#include "PageFiles.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <system_error>

namespace refpage {

PageFiles collectPageFiles(std::vector<std::string> const& paths) {
    namespace fs = std::filesystem;
    PageFiles result;
    for (auto const& name : paths) {
        fs::path const path(name);
        std::error_code error;
        if (fs::is_directory(path, error)) {
            std::vector<fs::path> found;
            for (auto const& item : fs::recursive_directory_iterator(path, error))
                if (item.is_regular_file() && item.path().extension() == ".json") found.push_back(item.path());
            std::sort(found.begin(), found.end());
            result.files.insert(result.files.end(), found.begin(), found.end());
        } else if (fs::exists(path, error)) {
            result.files.push_back(path);
        } else {
            result.missing.push_back(PageError{name, {}, "no such file or folder"});
        }
    }
    return result;
}

void printErrors(PageErrors const& errors, std::string_view severity) {
    for (auto const& error : errors) fmt::print(stderr, "{}\n", error.describe(severity));
}

}  // namespace refpage
