#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <refpage/docset/DocSet.hpp>
#include <refpage/format/Links.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/Parallel.hpp>
#include <unordered_map>
#include <utility>

namespace refpage {

using namespace reference::property;

namespace {

/// Where an entity name was first documented: its first page and, on that page, the first
/// entity of each type. An entity is a duplicate of the first page's first entity when it
/// is on a later page, or of the first of its own type when it is on that same page.
struct FirstPlaces {
    std::size_t page;
    std::size_t entity;
    std::unordered_map<RefEntityType::Value, std::size_t> byType;  ///< type -> first entity of it on `page`
};

}  // namespace

std::string issueLabel(DocSetIssue issue, std::size_t count) {
    char const* const labels[] = {"unresolved link", "shared Href", "duplicate name"};
    return fmt::format("{}{}", labels[static_cast<std::size_t>(issue)], count == 1 ? "" : "s");
}

std::size_t DocSetReport::count(DocSetIssue issue) const noexcept {
    return static_cast<std::size_t>(
        std::count_if(findings.begin(), findings.end(), [issue](DocSetFinding const& f) { return f.issue == issue; }));
}

DocSet::DocSet(std::vector<PageSummary> pages) : pages_(std::move(pages)) {
    byHref_.reserve(pages_.size());
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        std::string_view const href = linkPagePart(pages_[i].href);
        if (!href.empty()) byHref_.emplace(href, i);
    }
}

LinkTarget DocSet::resolve(std::string_view link) const {
    LinkTarget target;
    if (link.empty()) return target;
    if (auto const hash = link.find('#'); hash != std::string_view::npos) target.fragment = link.substr(hash + 1);
    if (isExternalLink(link)) {
        target.kind = LinkTarget::Kind::External;
        return target;
    }
    std::string_view const part = linkPagePart(link);
    if (part.empty()) {
        target.kind = LinkTarget::Kind::SamePage;
        return target;
    }
    auto const found = byHref_.find(std::string(part));
    if (found == byHref_.end()) {
        target.kind = LinkTarget::Kind::Unresolved;
    } else {
        target.kind = LinkTarget::Kind::Page;
        target.page = found->second;
    }
    return target;
}

DocSetReport DocSet::check(unsigned jobs) const {
    // Shared Hrefs and links need only the page and the set's Hrefs: each page on its own,
    // on the threads. Duplicate names need the pages in order: one pass over them.
    struct PageFindings {
        std::vector<DocSetFinding> href, names, links;
    };
    std::vector<PageFindings> perPage(pages_.size());
    auto const finding = [this](std::size_t p, DocSetIssue issue, std::string pointer, std::string message) {
        return DocSetFinding{issue, PageError{pages_[p].source, std::move(pointer), std::move(message)}};
    };
    forEachIndex(pages_.size(), jobs, [&](std::size_t p) {
        PageSummary const& page = pages_[p];
        if (auto const part = linkPagePart(page.href); !part.empty()) {
            std::size_t const first = byHref_.at(std::string(part));
            if (first != p)
                perPage[p].href.push_back(finding(p, DocSetIssue::SharedHref, "/Href",
                                                  fmt::format("Href {} is also the Href of {}", refpage::quoted(page.href),
                                                              refpage::quoted(pages_[first].source))));
        }
        for (auto const& link : page.links)
            if (resolve(link.text).kind == LinkTarget::Kind::Unresolved)
                perPage[p].links.push_back(finding(p, DocSetIssue::UnresolvedLink, link.pointer,
                                                   fmt::format("link {} leads to no page of the set{}",
                                                               refpage::quoted(link.text), link.where())));
    });

    std::unordered_map<std::string_view, FirstPlaces> names;
    for (std::size_t p = 0; p < pages_.size(); ++p) {
        PageSummary const& page = pages_[p];
        for (std::size_t e = 0; e < page.entities.size(); ++e) {
            EntitySummary const& entity = page.entities[e];
            if (entity.name.empty()) continue;
            auto [found, isNew] = names.try_emplace(entity.name, FirstPlaces{p, e, {}});
            FirstPlaces& first = found->second;
            if (isNew) {
                first.byType.emplace(entity.type, e);
                continue;
            }
            std::string where;
            if (first.page != p) {
                where = fmt::format("{} (/RefEntities/{})", refpage::quoted(pages_[first.page].source), first.entity);
            } else if (auto [sameType, typeIsNew] = first.byType.try_emplace(entity.type, e); !typeIsNew) {
                where = fmt::format("/RefEntities/{} of this page", sameType->second);
            } else {
                continue;
            }
            perPage[p].names.push_back(finding(p, DocSetIssue::DuplicateName, fmt::format("/RefEntities/{}/Name", e),
                                               fmt::format("entity name {} is also documented by {}",
                                                           refpage::quoted(entity.name), where)));
        }
    }

    DocSetReport report;
    for (auto& page : perPage)
        for (auto* part : {&page.href, &page.names, &page.links})
            std::move(part->begin(), part->end(), std::back_inserter(report.findings));
    return report;
}

}  // namespace refpage
