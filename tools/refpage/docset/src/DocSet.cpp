#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>
#include <refpage/docset/DocSet.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/Text.hpp>
#include <utf8.h>
#include <utility>

namespace refpage {

using namespace reference::property;

namespace {

/// "scheme:" as RFC 3986 spells a scheme: a letter, then letters, digits, '+', '-' or '.'.
bool hasScheme(std::string_view link) {
    if (link.empty() || !std::isalpha(static_cast<unsigned char>(link.front()))) return false;
    for (char const c : link) {
        if (c == ':') return true;
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '+' && c != '-' && c != '.') return false;
    }
    return false;
}

/// The part of a relative link that names a page: no fragment, no leading "./".
std::string_view pagePart(std::string_view link) {
    link = link.substr(0, link.find('#'));
    while (link.starts_with("./")) link.remove_prefix(2);
    return link;
}

/// One link of a page: where it is and its text.
struct PageLink {
    std::string pointer;
    std::u16string const* text;
};

template <class Record>
void addHrefs(std::vector<PageLink>& links, std::string const& prefix, std::vector<Record> const& records) {
    for (std::size_t i = 0; i < records.size(); ++i)
        links.push_back({fmt::format("{}/{}/Href", prefix, i), &records[i].getHref()});
}

/// Every link a page holds, in the order of the page's keys.
std::vector<PageLink> linksOf(RefItem const& page) {
    std::vector<PageLink> links;
    auto const& groups = page.getInputGroups();
    for (std::size_t g = 0; g < groups.size(); ++g)
        addHrefs(links, fmt::format("/InputGroups/{}/Inputs", g), groups[g].getInputs());
    addHrefs(links, "/Outputs", page.getOutputs());
    auto const& propertyGroups = page.getClassPropertyGroups();
    for (std::size_t g = 0; g < propertyGroups.size(); ++g)
        addHrefs(links, fmt::format("/ClassPropertyGroups/{}/Properties", g), propertyGroups[g].getClassProperties());
    auto const& seeAlso = page.getSeeAlsoInfo();
    for (std::size_t i = 0; i < seeAlso.size(); ++i)
        links.push_back({fmt::format("/SeeAlso/{}/Url", i), &seeAlso[i].getUrl()});
    auto const& examples = page.getExamples();
    for (std::size_t i = 0; i < examples.size(); ++i)
        links.push_back({fmt::format("/Examples/{}/Url", i), &examples[i].getUrl()});
    addHrefs(links, "/Parameters", page.getParameters());
    return links;
}


}  // namespace

std::string issueLabel(DocSetIssue issue, std::size_t count) {
    char const* const labels[] = {"unresolved link", "shared Href", "duplicate name"};
    return fmt::format("{}{}", labels[static_cast<std::size_t>(issue)], count == 1 ? "" : "s");
}

std::size_t DocSetReport::count(DocSetIssue issue) const noexcept {
    return static_cast<std::size_t>(
        std::count_if(findings.begin(), findings.end(), [issue](DocSetFinding const& f) { return f.issue == issue; }));
}

DocSet::DocSet(std::vector<DocSetPage> pages) : pages_(std::move(pages)) {
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        std::string const href(pagePart(utf8(pages_[i].page->getHref())));
        if (!href.empty()) byHref_.emplace(href, i);
    }
}

LinkTarget DocSet::resolve(std::string_view link) const {
    LinkTarget target;
    if (link.empty()) return target;
    if (auto const hash = link.find('#'); hash != std::string_view::npos) target.fragment = link.substr(hash + 1);
    if (hasScheme(link) || link.starts_with('/')) {
        target.kind = LinkTarget::Kind::External;
        return target;
    }
    std::string_view const part = pagePart(link);
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

DocSetReport DocSet::check() const {
    struct Place {
        std::size_t page;
        std::size_t entity;
        RefEntityType::Value type;
    };
    std::map<std::u16string, std::vector<Place>> names;  // first places of each name
    std::vector<std::vector<DocSetFinding>> perPage(pages_.size());

    for (std::size_t p = 0; p < pages_.size(); ++p) {
        DocSetPage const& page = pages_[p];
        auto& findings = perPage[p];
        auto const add = [&](DocSetIssue issue, std::string pointer, std::string message) {
            findings.push_back({issue, PageError{page.source, std::move(pointer), std::move(message)}});
        };

        std::string const href = utf8(page.page->getHref());
        if (auto const part = pagePart(href); !part.empty()) {
            std::size_t const first = byHref_.at(std::string(part));
            if (first != p)
                add(DocSetIssue::SharedHref, "/Href",
                    fmt::format("Href {} is also the Href of {}", refpage::quoted(href), refpage::quoted(pages_[first].source)));
        }

        auto const& entities = page.page->getRefEntities();
        for (std::size_t e = 0; e < entities.size(); ++e) {
            auto const& entity = entities[e];
            if (entity.getName().empty()) continue;
            auto& places = names[entity.getName()];
            auto const earlier = std::find_if(places.begin(), places.end(), [&](Place const& place) {
                return place.page != p || place.type == entity.getRefEntityType();
            });
            if (earlier != places.end()) {
                std::string const where = earlier->page == p
                                              ? fmt::format("/RefEntities/{} of this page", earlier->entity)
                                              : fmt::format("{} (/RefEntities/{})", refpage::quoted(pages_[earlier->page].source),
                                                            earlier->entity);
                add(DocSetIssue::DuplicateName, fmt::format("/RefEntities/{}/Name", e),
                    fmt::format("entity name {} is also documented by {}", refpage::quoted(utf8(entity.getName())), where));
            }
            places.push_back({p, e, entity.getRefEntityType()});
        }

        for (auto const& link : linksOf(*page.page)) {
            std::string const text = utf8(*link.text);
            if (resolve(text).kind == LinkTarget::Kind::Unresolved)
                add(DocSetIssue::UnresolvedLink, link.pointer,
                    fmt::format("link {} leads to no page of the set", refpage::quoted(text)));
        }
    }

    DocSetReport report;
    for (auto& findings : perPage)
        std::move(findings.begin(), findings.end(), std::back_inserter(report.findings));
    return report;
}

std::vector<DocSetPage> docSetPages(std::span<PageInput const> sources, std::span<LoadResult const> results) {
    std::vector<DocSetPage> pages;
    for (std::size_t i = 0; i < results.size() && i < sources.size(); ++i)
        if (results[i].ok())
            pages.push_back({sources[i].source, results[i].page, &nativePage(results[i].page.get())});
    return pages;
}

}  // namespace refpage
