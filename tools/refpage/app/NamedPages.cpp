#include "NamedPages.hpp"

#include <algorithm>
#include <new>
#include <refpage/format/Inputs.hpp>

namespace refpage {

LoadResult loadEntry(PageEntry const& entry, LoadOptions const& options) {
    LoadResult result;
    try {
        std::string text;
        PageError error;
        if (readPageEntry(entry, text, error)) return loadPage(text, entry.source(), options);
        result.errors.push_back(std::move(error));
    } catch (std::bad_alloc const&) {
        result = LoadResult{};
        result.errors.push_back(PageError{entry.source(), {}, "out of memory"});
    }
    return result;
}

LoadResult loadNamedPage(std::string const& name, LoadOptions const& options) {
    return loadEntry(name == stdinPath ? PageEntry{} : PageEntry{name, std::nullopt}, options);
}

std::string stdinNamedTwice(std::vector<std::string> const& names) {
    if (std::count(names.begin(), names.end(), stdinPath) < 2) return {};
    return "standard input (-) can be named only once";
}

}  // namespace refpage
