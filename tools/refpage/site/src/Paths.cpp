#include <fmt/format.h>

#include <algorithm>
#include <refpage/site/Paths.hpp>
#include <refpage/support/Text.hpp>
#include <set>

namespace refpage {

namespace {

/// True when `text` ends in `tail`, ignoring ASCII case.
bool endsWith(std::string_view text, std::string_view tail) {
    return text.size() >= tail.size() && equalsIgnoringAsciiCase(text.substr(text.size() - tail.size()), tail);
}

}  // namespace

std::optional<std::string> safePagePath(std::string_view href) {
    std::string_view const path = href.substr(0, href.find('#'));
    if (!safeRelativePath(path)) return std::nullopt;
    if (!endsWith(path, ".html") && !endsWith(path, ".htm")) return std::nullopt;
    std::string const lower = asciiLowered(path);
    if (lower == siteIndexPath || lower.starts_with(siteAssetFolder)) return std::nullopt;
    return std::string(path);
}

std::string derivedPagePath(std::string_view name, std::size_t attempt) {
    std::string stem;
    for (char c : name)
        if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '_' ||
            c == '-')
            stem += c;
    if (stem.size() > 120) stem.resize(120);
    if (stem.empty() || stem.front() == '.') stem.insert(0, "page");
    return attempt == 0 ? fmt::format("pages/{}.html", stem) : fmt::format("pages/{}-{}.html", stem, attempt + 1);
}

PagePathAssignment assignPagePaths(std::vector<std::string> const& hrefs, std::vector<std::string> const& names) {
    PagePathAssignment result;
    std::set<std::string> taken;
    std::vector<bool> keeps(hrefs.size(), false);
    result.paths.resize(hrefs.size());
    // Safe Hrefs first, in page order, so that a derived path never takes a page's own Href.
    for (std::size_t i = 0; i < hrefs.size(); ++i)
        if (auto path = safePagePath(hrefs[i]); path && taken.insert(asciiLowered(*path)).second) {
            result.paths[i] = std::move(*path);
            keeps[i] = true;
        }
    for (std::size_t i = 0; i < hrefs.size(); ++i) {
        if (keeps[i]) continue;
        std::string_view const name = i < names.size() ? std::string_view(names[i]) : std::string_view();
        for (std::size_t attempt = 0;; ++attempt) {
            std::string path = derivedPagePath(name, attempt);
            if (taken.insert(asciiLowered(path)).second) {
                result.paths[i] = std::move(path);
                break;
            }
        }
        result.derived.push_back(i);
    }
    return result;
}

std::string rootPrefix(std::string_view from) {
    std::string out;
    for (char c : from)
        if (c == '/') out += "../";
    return out;
}

std::string relativeUrl(std::string_view from, std::string_view to) {
    // Drop the folders both paths share, then climb out of the rest of `from`.
    std::size_t common = 0;
    for (std::size_t i = 0; i < from.size() && i < to.size() && from[i] == to[i]; ++i)
        if (from[i] == '/') common = i + 1;
    return rootPrefix(from.substr(common)) + percentEncode(to.substr(common));
}

std::string percentEncode(std::string_view text, bool fragment) {
    std::string out;
    out.reserve(text.size());
    for (unsigned char c : text) {
        bool const plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
                           c == '.' || c == '_' || c == '~' || (c == '/' && !fragment);
        if (plain)
            out += static_cast<char>(c);
        else
            out += fmt::format("%{:02X}", c);
    }
    return out;
}

}  // namespace refpage
