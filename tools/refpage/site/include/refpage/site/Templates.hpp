// The templates and static files of a site: the defaults compiled into the tool,
// any of them replaceable by a file of the same name in a folder.
#pragma once

#include <filesystem>
#include <refpage/format/PageError.hpp>
#include <string>
#include <string_view>

namespace refpage {

/// Mustache templates (rendered through libmstch, so `{{x}}` is HTML-escaped and only
/// `{{{description}}}`, built by descriptionHtml, is inserted as markup) and the files
/// copied to the site's `_site/` folder.
struct SiteTemplates {
    std::string page;    ///< page.mustache: one reference page
    std::string index;   ///< index.mustache: the index page
    std::string link;    ///< link.mustache: partial `link`, a link or its text
    std::string search;  ///< search.mustache: partial `search`, the search box
    std::string style;   ///< style.css
    std::string script;  ///< search.js: the search box's behaviour
    std::string rank;    ///< search-rank.js: the ranking; empty when the tool has none

    /// The templates compiled into the tool.
    static SiteTemplates defaults();
    /// The defaults, with every file of those names in `folder` in their place. A file
    /// that cannot be read is an error; `folder` itself must exist.
    static SiteTemplates load(std::filesystem::path const& folder, PageErrors& errors);
};

/// A default file by name ("page.mustache", "style.css", ...); empty when there is none.
std::string_view defaultSiteFile(std::string_view name);

}  // namespace refpage
