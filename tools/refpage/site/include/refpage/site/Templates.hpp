// The templates and static files of a site: the defaults compiled into the tool,
// any of them replaceable by a file of the same name in a folder. Templates are
// compiled once (partials expanded, parsed) and reused for every page.
#pragma once

#include <filesystem>
#include <memory>
#include <refpage/format/PageError.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace refpage {

/// A template that cannot be used: its file name and what is wrong.
class TemplateError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// How deeply partials may include partials (`{{> link}}` inside `{{> search}}` is 2).
inline constexpr std::size_t maxPartialDepth = 8;

class CompiledTemplates;

/// Mustache templates (`{{x}}` is HTML-escaped by escapeHtml; only `{{{description}}}`,
/// built by the description renderer, is inserted as markup) and the files copied to the
/// site's `_site/` folder. Partials are written `{{> name}}` and expanded in place when
/// the templates are compiled.
struct SiteTemplates {
    std::string page;       ///< page.mustache: one reference page
    std::string index;      ///< index.mustache: the index page
    std::string notFound;   ///< 404.mustache: the page a server shows for a missing file
    std::string link;       ///< link.mustache: partial `link`, a link or its text
    std::string search;     ///< search.mustache: partial `search`, the search box
    std::string style;      ///< style.css
    std::string script;     ///< search.js: the search box's behaviour
    std::string rank;       ///< search-rank.js: the ranking; empty when the tool has none
    std::string behaviour;  ///< site.js: code highlighting, copy buttons, '/' to search, navigation

    /// The templates compiled into the tool, compiled.
    static SiteTemplates defaults();
    /// The defaults, with every file of those names in `folder` in their place, compiled. A
    /// file that cannot be read is an error naming it; a template that does not compile is an
    /// error naming it too, and then every default is used. `folder` itself must exist.
    static SiteTemplates load(std::filesystem::path const& folder, PageErrors& errors);

    /// The compiled form of the texts above: the one made by defaults() or load() while the
    /// texts are unchanged, else a new one. Throws TemplateError for a broken template.
    std::shared_ptr<CompiledTemplates const> compiled() const;

    /// Set by defaults() and load(); compiled() checks it still matches the texts.
    std::shared_ptr<CompiledTemplates const> cache;
};

/// A default file by name ("page.mustache", "style.css", "icon.png", ...); empty when there is none.
std::string_view defaultSiteFile(std::string_view name);

}  // namespace refpage
