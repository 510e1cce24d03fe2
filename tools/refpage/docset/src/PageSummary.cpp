#include <fmt/format.h>

#include <reference/property/DeprecationStatus.hpp>
#include <refpage/docset/PageSummary.hpp>
#include <refpage/format/Anchors.hpp>
#include <refpage/format/Description.hpp>
#include <refpage/format/PageFiles.hpp>
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

/// Every link a page holds, in the order of the page's keys, the description's links included.
std::vector<LinkSummary> linksOf(RefItem const& page, ParsedDescription const& description) {
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
    for (auto const& reference : description.references())
        if (reference.kind == DescriptionReference::Kind::Link && !reference.target.empty())
            links.push_back({"/Description", reference.target, reference.position.line, reference.position.column});
    return links;
}

/// What a page lists: its first entity, the entities and class properties that have an anchor.
std::vector<EntrySummary> entriesOf(RefItem const& page, ParsedDescription const& description) {
    std::vector<EntrySummary> entries;
    auto const& entities = page.getRefEntities();
    if (entities.empty()) return entries;
    entries.push_back({utf8(entities[0].getName()), entities[0].getRefEntityType(), entities[0].getFunctionType(), {}, {}});
    for (Anchor& anchor : anchorsOf(page, description)) {
        if (anchor.kind == Anchor::Kind::Entity) {
            RefEntity const& entity = entities[anchor.indexPath[0]];
            entries.push_back({std::move(anchor.name), entity.getRefEntityType(), entity.getFunctionType(),
                               std::move(anchor.id), {}});
        } else if (anchor.kind == Anchor::Kind::ClassProperty) {
            ClassProperty const& property =
                page.getClassPropertyGroups()[anchor.indexPath[0]].getClassProperties()[anchor.indexPath[1]];
            entries.push_back({entries.front().name + "." + anchor.name, RefEntityType::Property,
                               FunctionType::getDefaultValue(), std::move(anchor.id), utf8(property.getPurpose())});
        }
    }
    return entries;
}

}  // namespace

std::string LinkSummary::where() const {
    return line == 0 ? std::string() : fmt::format(" (line {}, column {} of the description)", line, column);
}

PageSummary summarize(std::string source, RefItem const& page, SummaryLinks links) {
    PageSummary summary;
    summary.source = std::move(source);
    summary.href = utf8(page.getHref());
    summary.title = pageTitle(page);
    summary.package = utf8(page.getPackageName());
    summary.purpose = utf8(page.getPurpose());
    summary.deprecated = page.getDeprecationStatus() != DeprecationStatus::Current;
    summary.entities.reserve(page.getRefEntities().size());
    for (auto const& entity : page.getRefEntities())
        summary.entities.push_back({utf8(entity.getName()), entity.getRefEntityType(), entity.getFunctionType()});
    ParsedDescription const description = ParsedDescription::parse(utf8(page.getDescription()));
    summary.entries = entriesOf(page, description);
    if (links == SummaryLinks::Kept) summary.links = linksOf(page, description);
    for (auto& file : filesOf(page, description)) {
        bool const inDescription = file.pointer == "/Description";  // a place inside the description to give
        summary.files.push_back({std::move(file.pointer), std::move(file.path), inDescription ? file.position.line : 0,
                                 inDescription ? file.position.column : 0});
    }
    // A set holds one summary per page for the whole run: no spare capacity.
    summary.entries.shrink_to_fit();
    summary.links.shrink_to_fit();
    summary.files.shrink_to_fit();
    return summary;
}

}  // namespace refpage
