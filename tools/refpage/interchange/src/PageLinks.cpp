#include "PageLinks.hpp"

#include <fmt/format.h>

namespace refpage {

namespace {

template <class Record>
void addHrefs(std::vector<PageLink>& links, std::string const& prefix, std::vector<Record> const& records) {
    for (std::size_t i = 0; i < records.size(); ++i)
        links.push_back({fmt::format("{}/{}/Href", prefix, i), &records[i].getHref()});
}

}  // namespace

std::vector<PageLink> pageLinks(reference::property::RefItem const& page) {
    std::vector<PageLink> links;
    auto const& groups = page.getInputGroups();
    for (std::size_t g = 0; g < groups.size(); ++g)
        addHrefs(links, fmt::format("/InputGroups/{}/Inputs", g), groups[g].getInputs());
    addHrefs(links, "/Outputs", page.getOutputs());
    auto const& propertyGroups = page.getClassPropertyGroups();
    for (std::size_t g = 0; g < propertyGroups.size(); ++g)
        addHrefs(links, fmt::format("/ClassPropertyGroups/{}/Properties", g), propertyGroups[g].getClassProperties());
    auto const& seeAlso = page.getSeeAlsoInfo();
    for (std::size_t i = 0; i < seeAlso.size(); ++i) links.push_back({fmt::format("/SeeAlso/{}/Url", i), &seeAlso[i].getUrl()});
    auto const& examples = page.getExamples();
    for (std::size_t i = 0; i < examples.size(); ++i)
        links.push_back({fmt::format("/Examples/{}/Url", i), &examples[i].getUrl()});
    addHrefs(links, "/Parameters", page.getParameters());
    return links;
}

}  // namespace refpage
