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

/// Builds template data in place: every child is made inside its parent, so nothing is
/// copied after it is made (kainjow's data copies whatever it is given). A Node refers to
/// data inside its parent: it stays valid until another element is appended to the same list.
class TemplateNode {
public:
    explicit TemplateNode(TemplateData& data) noexcept : data_(&data) {}

    TemplateNode& set(std::string const& key, std::string const& value) {
        data_->set(key, TemplateData(value));
        return *this;
    }
    TemplateNode& set(std::string const& key, char const* value) { return set(key, std::string(value)); }
    TemplateNode& set(std::string const& key, bool value) {
        data_->set(key, TemplateData(value));
        return *this;
    }
    /// Sets `key` only when `value` is not empty: mustache takes "" as true.
    TemplateNode& setIf(std::string const& key, std::string const& value) {
        if (!value.empty()) set(key, value);
        return *this;
    }
    /// A new empty object or list under `key`.
    TemplateNode object(std::string const& key) { return make(key, TemplateData::type::object); }
    TemplateNode list(std::string const& key) { return make(key, TemplateData::type::list); }
    /// A new empty object, or a string, at the end of this list.
    TemplateNode append() {
        data_->push_back(TemplateData(TemplateData::type::object));
        return TemplateNode(const_cast<TemplateData&>(data_->list_value().back()));
    }
    void append(std::string const& value) { data_->push_back(TemplateData(value)); }

    TemplateData& data() noexcept { return *data_; }

private:
    TemplateNode make(std::string const& key, TemplateData::type type) {
        data_->set(key, TemplateData(type));
        // The data lives in this object's map, which is not const: only kainjow's accessor is.
        return TemplateNode(const_cast<TemplateData&>(*data_->get(key)));
    }

    TemplateData* data_;  ///< not owned: inside the tree being built
};

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
