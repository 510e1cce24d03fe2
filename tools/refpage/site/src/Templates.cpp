#include <refpage/format/Inputs.hpp>
#include <refpage/site/Templates.hpp>
#include <system_error>

#include "Mustache.hpp"

namespace refpage {

namespace {

struct Slot {
    std::string_view name;
    std::string SiteTemplates::*field;
};

constexpr Slot slots[] = {
    {"page.mustache", &SiteTemplates::page},     {"index.mustache", &SiteTemplates::index},
    {"404.mustache", &SiteTemplates::notFound},  {"link.mustache", &SiteTemplates::link},
    {"search.mustache", &SiteTemplates::search}, {"style.css", &SiteTemplates::style},
    {"search.js", &SiteTemplates::script},       {"search-rank.js", &SiteTemplates::rank},
    {"site.js", &SiteTemplates::behaviour},
};

}  // namespace

SiteTemplates SiteTemplates::defaults() {
    SiteTemplates templates;
    for (auto const& slot : slots) templates.*slot.field = std::string(defaultSiteFile(slot.name));
    templates.cache = std::make_shared<CompiledTemplates const>(templates);
    return templates;
}

SiteTemplates SiteTemplates::load(std::filesystem::path const& folder, PageErrors& errors) {
    SiteTemplates templates = defaults();
    std::error_code ec;
    if (!std::filesystem::is_directory(folder, ec)) {
        errors.push_back({folder.string(), "", "no such templates folder"});
        return templates;
    }
    for (auto const& slot : slots) {
        auto const file = folder / slot.name;
        if (!std::filesystem::exists(file, ec)) continue;
        PageError error;
        if (!readTextFile(file, templates.*slot.field, error)) errors.push_back(error);
    }
    try {
        templates.cache = std::make_shared<CompiledTemplates const>(templates);
    } catch (TemplateError const& e) {
        errors.push_back({(folder / "").string(), "", e.what()});
        templates = defaults();
    }
    return templates;
}

std::shared_ptr<CompiledTemplates const> SiteTemplates::compiled() const {
    if (cache && cache->compiledFrom(*this)) return cache;
    return std::make_shared<CompiledTemplates const>(*this);
}

}  // namespace refpage
