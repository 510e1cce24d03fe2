#include <fmt/format.h>

#include <reference/property/RecordProducer.hpp>
#include <refpage/PageLookup.hpp>
#include <refpage/TextTable.hpp>
#include <utf8.h>

namespace refpage {

using namespace reference::property;

RefItemLookup makeLookup(RefItem const& page) {
    auto const& entities = page.getRefEntities();
    RefEntity const none;
    RefEntity const& first = entities.empty() ? none : entities.front();
    return RecordProducer::makeRefItemLookup(first.getName(), first.getRefEntityType(), page.getPurpose(),
                                             page.getDeprecationStatus() != DeprecationStatus::Current, page.getHref(),
                                             first.getFunctionType());
}

namespace {

std::string utf8(std::u16string const& text) {
    return utf8::utf16to8(text);
}

std::string joined(std::vector<std::u16string> const& values) {
    std::string text;
    for (auto const& value : values) {
        if (!text.empty()) text += " | ";
        text += utf8::utf16to8(value);
    }
    return text;
}

/// A heading and its underline.
void heading(std::string& out, std::string const& title) {
    out += fmt::format("\n{}\n{}\n", title, std::string(displayWidth(title), '-'));
}

template <class Record>
void objectTable(std::string& out, std::string const& title, std::vector<Record> const& records) {
    if (records.empty()) return;
    heading(out, title);
    TextTable table({"Name", "Values", "Default", "Purpose"});
    for (auto const& record : records)
        table.addRow({utf8(record.getName()), joined(record.getValues()), utf8(record.getDefaultValue()),
                      utf8(record.getPurpose())});
    out += table.render();
}

}  // namespace

std::string renderPage(RefItem const& page) {
    std::string out;
    RefItemLookup const summary = makeLookup(page);
    std::string const name = summary.getName().empty() ? utf8(page.getHref()) : utf8(summary.getName());
    out += fmt::format("{}\n{}\n", name, std::string(displayWidth(name), '='));
    if (!page.getPurpose().empty()) out += fmt::format("{}\n", utf8(page.getPurpose()));

    out += "\n";
    TextTable facts({"", ""});
    for (auto const& entity : page.getRefEntities())
        facts.addRow({"Entity", fmt::format("{} ({}, {})", utf8(entity.getName()),
                                            RefEntityType::enumToString(entity.getRefEntityType()),
                                            FunctionType::enumToString(entity.getFunctionType()))});
    if (!page.getPackageName().empty()) facts.addRow({"Package", utf8(page.getPackageName())});
    if (!page.getIntroduced().empty()) facts.addRow({"Introduced in", utf8(page.getIntroduced())});
    facts.addRow({"Status", DeprecationStatus::enumToString(page.getDeprecationStatus())});
    facts.addRow({"Link", utf8(page.getHref())});
    auto const& thumbnail = page.getAppThumbnail();
    if (!thumbnail.getFileRef().empty() || !thumbnail.getAlt().empty())
        facts.addRow({"Thumbnail", fmt::format("{} ({})", utf8(thumbnail.getFileRef()), utf8(thumbnail.getAlt()))});
    std::string const factLines = facts.render();
    out += factLines.substr(factLines.find('\n') + 1);  // the empty header line

    if (!page.getDescription().empty()) {
        heading(out, "Description");
        out += fmt::format("  {}\n", utf8(page.getDescription()));
    }
    for (auto const& group : page.getSyntaxGroups()) {
        heading(out, fmt::format("{} [{}]", group.getTitle().empty() ? "Syntax" : utf8(group.getTitle()),
                                 SyntaxType::enumToString(group.getSyntaxType())));
        for (auto const& line : group.getSyntaxes()) out += fmt::format("  {}\n", utf8(line));
    }
    for (auto const& group : page.getInputGroups()) {
        if (group.getInputs().empty()) continue;
        heading(out, group.getTitle().empty() ? std::string("Inputs") : utf8(group.getTitle()));
        TextTable table({"Name", "Values", "Default", "Syntax", "Purpose"});
        for (auto const& input : group.getInputs())
            table.addRow({utf8(input.getName()) + (input.isNameValuePair() ? " (name-value)" : ""),
                          joined(input.getValues()), utf8(input.getDefaultValue()),
                          SyntaxType::enumToString(input.getSyntaxType()), utf8(input.getPurpose())});
        out += table.render();
    }
    if (!page.getOutputs().empty()) {
        heading(out, "Outputs");
        TextTable table({"Name", "Values", "Syntax", "Purpose"});
        for (auto const& output : page.getOutputs())
            table.addRow({utf8(output.getName()), joined(output.getValues()),
                          SyntaxType::enumToString(output.getSyntaxType()), utf8(output.getPurpose())});
        out += table.render();
    }
    for (auto const& group : page.getClassPropertyGroups())
        objectTable(out, group.getTitle().empty() ? std::string("Properties") : utf8(group.getTitle()),
                    group.getClassProperties());
    objectTable(out, "Parameters", page.getParameters());
    if (!page.getSeeAlsoInfo().empty()) {
        heading(out, "See also");
        TextTable table({"Name", "Link"}, 48);
        for (auto const& link : page.getSeeAlsoInfo()) table.addRow({utf8(link.getName()), utf8(link.getUrl())});
        out += table.render();
    }
    if (!page.getExamples().empty()) {
        heading(out, "Examples");
        for (auto const& example : page.getExamples()) {
            if (!example.getTitle().empty()) out += fmt::format("  {}\n", utf8(example.getTitle()));
            out += fmt::format("    >> {}\n", utf8(example.getOpenCommand()));
            if (!example.getUrl().empty()) out += fmt::format("    ({})\n", utf8(example.getUrl()));
        }
    }
    return out;
}

}  // namespace refpage
