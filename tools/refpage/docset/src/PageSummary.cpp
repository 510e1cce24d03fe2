#include <fmt/format.h>

#include <reference/property/DeprecationStatus.hpp>
#include <refpage/docset/PageSummary.hpp>
#include <refpage/format/PageTitle.hpp>
#include <refpage/support/Text.hpp>

namespace refpage {

using namespace reference::property;

namespace {

/// Adds the link at `pointer()` unless it is empty: an empty link leads nowhere and is never checked.
template <class Pointer>
void addLink(std::vector<LinkSummary>& links, std::u16string const& text, Pointer const& pointer) {
    if (!text.empty()) links.push_back({pointer(), utf8(text)});
}

template <class Record>
void addHrefs(std::vector<LinkSummary>& links, std::string const& prefix, std::vector<Record> const& records) {
    for (std::size_t i = 0; i < records.size(); ++i)
        addLink(links, records[i].getHref(), [&] { return fmt::format("{}/{}/Href", prefix, i); });
}

/// Every link a page holds, in the order of the page's keys.
std::vector<LinkSummary> linksOf(RefItem const& page) {
    std::vector<LinkSummary> links;
    auto const& groups = page.getInputGroups();
    for (std::size_t g = 0; g < groups.size(); ++g)
        addHrefs(links, fmt::format("/InputGroups/{}/Inputs", g), groups[g].getInputs());
    addHrefs(links, "/Outputs", page.getOutputs());
    auto const& propertyGroups = page.getClassPropertyGroups();
    for (std::size_t g = 0; g < propertyGroups.size(); ++g)
        addHrefs(links, fmt::format("/ClassPropertyGroups/{}/Properties", g), propertyGroups[g].getClassProperties());
    auto const& seeAlso = page.getSeeAlsoInfo();
    for (std::size_t i = 0; i < seeAlso.size(); ++i)
        addLink(links, seeAlso[i].getUrl(), [&] { return fmt::format("/SeeAlso/{}/Url", i); });
    auto const& examples = page.getExamples();
    for (std::size_t i = 0; i < examples.size(); ++i)
        addLink(links, examples[i].getUrl(), [&] { return fmt::format("/Examples/{}/Url", i); });
    addHrefs(links, "/Parameters", page.getParameters());
    return links;
}

}  // namespace

PageSummary summarize(std::string source, RefItem const& page) {
    PageSummary summary;
    summary.source = std::move(source);
    summary.href = utf8(page.getHref());
    summary.title = pageTitle(page);
    summary.package = utf8(page.getPackageName());
    summary.purpose = utf8(page.getPurpose());
    summary.deprecated = page.getDeprecationStatus() != DeprecationStatus::Current;
    for (auto const& entity : page.getRefEntities())
        summary.entities.push_back({utf8(entity.getName()), entity.getRefEntityType(), entity.getFunctionType()});
    summary.links = linksOf(page);
    return summary;
}

}  // namespace refpage
