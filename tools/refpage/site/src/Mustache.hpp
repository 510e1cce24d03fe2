// Mustache templates compiled once, through kainjow-mustache, with the site's HTML
// escaping. Internal to the site layer: mustache types never appear in a public header.
#pragma once

#include <cstdint>
#include <kainjow/mustache.hpp>
#include <refpage/site/Templates.hpp>
#include <string>
#include <string_view>

namespace refpage {

using TemplateData = kainjow::mustache::data;
using TemplateList = kainjow::mustache::list;
using TemplateObject = kainjow::mustache::object;

/// `text` with every `{{> name}}` replaced by that partial's text (partials of partials too,
/// at most maxPartialDepth deep; an unknown partial is empty, as mustache has it). Throws
/// TemplateError naming `file` when partials nest deeper, the result passes 4 MiB, or
/// sections nest deeper than 32.
std::string expandPartials(std::string_view file, std::string_view text, SiteTemplates const& partials);

/// One template, parsed once. render() is safe from several threads: each thread renders
/// with its own copy of the parsed template, made on its first render.
class CompiledTemplate {
public:
    /// Throws TemplateError naming `file` when the text does not parse.
    CompiledTemplate(std::string file, std::string const& expanded);

    /// Renders `data`; every `{{x}}` goes through escapeHtml. Throws TemplateError.
    std::string render(TemplateData const& data) const;

private:
    std::string file_;
    std::uint64_t id_;                  ///< unique per compiled template in the process
    kainjow::mustache::mustache prototype_;       ///< copied by each thread; never rendered itself
};

/// The compiled page, index and 404 templates of one SiteTemplates.
class CompiledTemplates {
public:
    explicit CompiledTemplates(SiteTemplates const& templates);

    CompiledTemplate const& page() const noexcept { return page_; }
    CompiledTemplate const& index() const noexcept { return index_; }
    CompiledTemplate const& notFound() const noexcept { return notFound_; }

    /// True when `templates` holds the texts this was compiled from.
    bool compiledFrom(SiteTemplates const& templates) const noexcept;

private:
    std::string sources_[5];  ///< page, index, notFound, link, search as compiled
    CompiledTemplate page_, index_, notFound_;
};

}  // namespace refpage
