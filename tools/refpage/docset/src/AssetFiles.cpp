#include <fmt/format.h>

#include <refpage/docset/AssetFiles.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/Parallel.hpp>
#include <refpage/support/RelativePath.hpp>

namespace refpage {

PageErrors fileFindings(DocSet const& set, AssetFolder const& assets, unsigned jobs) {
    auto const& pages = set.pages();
    std::vector<PageErrors> perPage(pages.size());
    forEachIndex(pages.size(), jobs, [&](std::size_t p) {
        for (auto const& file : pages[p].files) {
            std::string why;
            if (!safeRelativePath(file.text)) {
                why = "is not a safe relative path; it is not published";
            } else if (!assets.holds(file.text, why)) {
                why = fmt::format("cannot be published from {}: {}", refpage::quoted(assets.path().string()), why);
            } else {
                continue;
            }
            perPage[p].push_back(PageError{pages[p].source, file.pointer,
                                           fmt::format("file {}{} {}", refpage::quoted(file.text), file.where(), why)});
        }
    });
    PageErrors findings;
    for (auto& page : perPage) std::move(page.begin(), page.end(), std::back_inserter(findings));
    return findings;
}

std::filesystem::path defaultAssetFolder(std::vector<std::string> const& names) {
    if (names.empty() || names.front() == "-") return ".";
    std::error_code ignored;
    std::filesystem::path const first(names.front());
    if (std::filesystem::is_directory(first, ignored)) return first;
    return first.has_parent_path() ? first.parent_path() : std::filesystem::path(".");
}

}  // namespace refpage
