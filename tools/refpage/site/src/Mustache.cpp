#include "Mustache.hpp"

#include <fmt/format.h>

#include <atomic>
#include <memory>
#include <refpage/site/Html.hpp>
#include <utility>
#include <vector>

namespace refpage {

namespace {

constexpr std::size_t maxExpandedBytes = 4 << 20;
constexpr std::size_t maxSectionDepth = 32;

std::string_view trim(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    return text;
}

std::string_view partialText(std::string_view name, SiteTemplates const& partials) {
    if (name == "link") return partials.link;
    if (name == "search") return partials.search;
    return {};
}

/// Appends `text` to `out` with its partials expanded; `depth` partials are open around it.
void expand(std::string_view file, std::string_view text, SiteTemplates const& partials, std::size_t depth,
            std::string& out) {
    for (std::size_t at = 0; at < text.size();) {
        std::size_t const open = text.find("{{>", at);
        std::size_t const close = open == std::string_view::npos ? open : text.find("}}", open + 3);
        if (close == std::string_view::npos) {
            out.append(text.substr(at));
            break;
        }
        out.append(text.substr(at, open - at));
        std::string_view const name = trim(text.substr(open + 3, close - open - 3));
        if (depth + 1 > maxPartialDepth)
            throw TemplateError(fmt::format("{}: partial \"{}\" is nested more than {} partials deep (does a partial "
                                            "include itself?)",
                                            file, name, maxPartialDepth));
        expand(file, partialText(name, partials), partials, depth + 1, out);
        if (out.size() > maxExpandedBytes)
            throw TemplateError(fmt::format("{}: with its partials expanded it is over {} bytes", file, maxExpandedBytes));
        at = close + 2;
    }
}

/// Throws when sections ({{#x}}, {{^x}}) nest deeper than the renderer walks.
void checkSectionDepth(std::string_view file, std::string_view text) {
    std::size_t depth = 0;
    for (std::size_t at = text.find("{{"); at != std::string_view::npos; at = text.find("{{", at + 2)) {
        if (at + 2 >= text.size()) break;
        char const kind = text[at + 2];
        if (kind == '#' || kind == '^') {
            if (++depth > maxSectionDepth)
                throw TemplateError(fmt::format("{}: sections nest more than {} deep", file, maxSectionDepth));
        } else if (kind == '/' && depth > 0) {
            --depth;
        }
    }
}

std::atomic<std::uint64_t> nextTemplateId{1};

/// This thread's parsed copies, by template id; the few most recent are kept.
struct ThreadCopies {
    static constexpr std::size_t kept = 16;
    std::vector<std::pair<std::uint64_t, std::unique_ptr<kainjow::mustache::mustache>>> copies;
};

}  // namespace

std::string expandPartials(std::string_view file, std::string_view text, SiteTemplates const& partials) {
    std::string out;
    out.reserve(text.size());
    expand(file, text, partials, 0, out);
    checkSectionDepth(file, out);
    return out;
}

CompiledTemplate::CompiledTemplate(std::string file, std::string const& expanded)
    : file_(std::move(file)), id_(nextTemplateId++), prototype_(expanded) {
    if (!prototype_.is_valid()) throw TemplateError(fmt::format("{}: {}", file_, prototype_.error_message()));
    prototype_.set_custom_escape([](std::string const& text) { return escapeHtml(text); });
}

std::string CompiledTemplate::render(TemplateData const& data) const {
    // kainjow's render is not const: each thread renders its own copy of the parsed template.
    thread_local ThreadCopies mine;
    kainjow::mustache::mustache* copy = nullptr;
    for (auto& [id, parsed] : mine.copies)
        if (id == id_) copy = parsed.get();
    if (!copy) {
        if (mine.copies.size() == ThreadCopies::kept) mine.copies.erase(mine.copies.begin());
        mine.copies.emplace_back(id_, std::make_unique<kainjow::mustache::mustache>(prototype_));
        copy = mine.copies.back().second.get();
    }
    std::string out;
    out.reserve(16 * 1024);
    copy->render(data, [&out](std::string const& part) { out += part; });
    if (!copy->is_valid()) throw TemplateError(fmt::format("{}: {}", file_, copy->error_message()));
    return out;
}

CompiledTemplates::CompiledTemplates(SiteTemplates const& templates)
    : sources_{templates.page, templates.index, templates.notFound, templates.link, templates.search},
      page_("page.mustache", expandPartials("page.mustache", templates.page, templates)),
      index_("index.mustache", expandPartials("index.mustache", templates.index, templates)),
      notFound_("404.mustache", expandPartials("404.mustache", templates.notFound, templates)) {}

bool CompiledTemplates::compiledFrom(SiteTemplates const& templates) const noexcept {
    return sources_[0] == templates.page && sources_[1] == templates.index && sources_[2] == templates.notFound &&
           sources_[3] == templates.link && sources_[4] == templates.search;
}

}  // namespace refpage
