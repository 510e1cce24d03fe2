#include <fmt/format.h>

#include <algorithm>
#include <refpage/site/Paths.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/Text.hpp>
#include <unordered_map>
#include <unordered_set>

#include "PathTree.hpp"

namespace refpage {

namespace {

/// True when `text` ends in `tail`, ignoring ASCII case.
bool endsWith(std::string_view text, std::string_view tail) {
    return text.size() >= tail.size() && equalsIgnoringAsciiCase(text.substr(text.size() - tail.size()), tail);
}

/// True when `lowered` (a path in ASCII lower case) is one the site keeps for itself.
bool isReserved(std::string_view lowered) {
    return lowered == siteIndexPath || lowered == siteNotFoundPath || lowered.starts_with(siteAssetFolder);
}

/// Why `href` cannot be a page's path at all, or nullopt when it can be.
std::optional<HrefRefusal> hrefProblem(std::string_view href) {
    if (href.empty()) return HrefRefusal::none;
    if (safePagePath(href)) return std::nullopt;
    std::string_view const path = href.substr(0, href.find('#'));
    if (relativePathTooLong(path)) return HrefRefusal::tooLong;
    if (isReserved(asciiLowered(path))) return HrefRefusal::reserved;
    return HrefRefusal::unsafe;
}

}  // namespace

std::optional<std::string> safePagePath(std::string_view href) {
    std::string_view const path = href.substr(0, href.find('#'));
    if (!safeRelativePath(path)) return std::nullopt;
    if (!endsWith(path, ".html") && !endsWith(path, ".htm")) return std::nullopt;
    if (isReserved(asciiLowered(path))) return std::nullopt;
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
    std::size_t const count = hrefs.size();
    PagePathAssignment result;
    result.paths.resize(count);
    // Every usable Href, folded, as a file; the site's own files too. A path under any of these
    // files cannot be written, whichever page comes first: the file wins.
    std::vector<std::optional<std::string>> candidates(count);
    std::vector<std::string> folded(count);
    PathTree files;
    files.addFile(siteIndexPath);
    files.addFile(siteNotFoundPath);
    for (std::size_t i = 0; i < count; ++i) {
        candidates[i] = safePagePath(hrefs[i]);
        if (!candidates[i]) continue;
        folded[i] = asciiLowered(*candidates[i]);
        files.addFile(folded[i]);
    }
    // Safe Hrefs first, in page order, so that a derived path never takes a page's own Href.
    PathTree kept;
    std::unordered_set<std::string_view> keptPaths;
    std::vector<std::optional<HrefRefusal>> refusals(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (!candidates[i])
            refusals[i] = hrefProblem(hrefs[i]);
        else if (files.liesUnderFile(folded[i]))
            refusals[i] = HrefRefusal::blocked;
        else if (!keptPaths.insert(folded[i]).second)
            refusals[i] = HrefRefusal::taken;
        else {
            result.paths[i] = std::move(*candidates[i]);
            kept.addFile(folded[i]);
        }
    }
    // Derived paths: each stem remembers the next attempt to try, so clashes cost nothing twice.
    std::unordered_map<std::string, std::size_t> nextAttempt;
    for (std::size_t i = 0; i < count; ++i) {
        if (!refusals[i]) continue;
        std::string_view const name = i < names.size() ? std::string_view(names[i]) : std::string_view();
        std::string const stem = asciiLowered(derivedPagePath(name, 0));
        std::size_t& attempt = nextAttempt[stem];
        std::string path = derivedPagePath(name, attempt);
        while (kept.holds(asciiLowered(path))) path = derivedPagePath(name, ++attempt);
        ++attempt;
        kept.addFile(asciiLowered(path));
        result.paths[i] = std::move(path);
        result.derived.push_back(i);
        result.refusals.push_back(*refusals[i]);
    }
    return result;
}

std::string refusalReason(std::string_view href, HrefRefusal refusal) {
    // Cut: an Href may be kilobytes long.
    std::string const shown = refpage::quoted(href.size() > 80 ? std::string(href.substr(0, 80)) + "..." : href);
    switch (refusal) {
        case HrefRefusal::none: return "the page has no Href";
        case HrefRefusal::taken: return "another page has the same Href";
        case HrefRefusal::unsafe: return fmt::format("Href {} is not a safe relative .html path", shown);
        case HrefRefusal::reserved: return fmt::format("Href {} is a path the site keeps for itself", shown);
        case HrefRefusal::tooLong: return fmt::format("Href {} is too long for a file path", shown);
        case HrefRefusal::blocked:
            return fmt::format("Href {} would put the page inside a folder that is another page's file", shown);
    }
    return {};
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

}  // namespace refpage
