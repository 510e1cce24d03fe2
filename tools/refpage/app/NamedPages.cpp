#include "NamedPages.hpp"

#include <algorithm>
#include <refpage/PageSource.hpp>

namespace refpage {

LoadResult loadNamedPage(std::string const& name, LoadOptions const& options) {
    PageEntry const entry = name == stdinPath ? PageEntry{} : PageEntry{name, std::nullopt};
    std::string text;
    PageError error;
    if (!readPageEntry(entry, text, error)) {
        LoadResult result;
        result.errors.push_back(std::move(error));
        return result;
    }
    return loadPage(text, entry.source(), options);
}

std::string stdinNamedTwice(std::vector<std::string> const& names) {
    if (std::count(names.begin(), names.end(), stdinPath) < 2) return {};
    return "standard input (-) can be named only once";
}

}  // namespace refpage
