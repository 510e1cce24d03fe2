#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include <refpage/terminal/DisplayWidth.hpp>
#include <refpage/format/PageTitle.hpp>
#include <refpage/terminal/PageView.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/terminal/TextTable.hpp>
#include <refpage/support/Text.hpp>

namespace refpage {

using namespace reference::property;

namespace {

/// Page text as it may reach a terminal: control and non-printable characters escaped.
std::string shown(std::u16string const& text) {
    return displayable(utf8(text));
}

std::string joined(std::vector<std::u16string> const& values) {
    std::string text;
    for (auto const& value : values) {
        if (!text.empty()) text += " | ";
        text += shown(value);
    }
    return text;
}

/// `text` with every line indented by `indent`, each line ended by a newline;
/// the lines' own leading spaces are kept, empty lines stay empty.
std::string indented(std::string_view text, std::string_view indent) {
    std::string out;
    for (;;) {
        std::size_t const end = text.find('\n');
        std::string_view const line = text.substr(0, end);
        if (!line.empty()) out.append(indent).append(line);
        out += '\n';
        if (end == std::string_view::npos) return out;
        text.remove_prefix(end + 1);
    }
}

/// Columns of the widest line of `text`.
std::size_t widestLine(std::string_view text) {
    std::size_t width = 0;
    for (std::size_t end = text.find('\n');; end = text.find('\n')) {
        width = std::max(width, displayWidth(text.substr(0, end)));
        if (end == std::string_view::npos) return width;
        text.remove_prefix(end + 1);
    }
}

/// A title and its underline of `mark`, as wide as the title's widest line.
std::string underlined(std::string const& title, char mark) {
    return fmt::format("{}\n{}\n", title, std::string(widestLine(title), mark));
}

/// A heading and its underline, after an empty line.
void heading(std::string& out, std::string const& title) {
    out += "\n" + underlined(title, '-');
}

template <class Record>
void objectTable(std::string& out, std::string const& title, std::vector<Record> const& records) {
    if (records.empty()) return;
    heading(out, title);
    TextTable table({"Name", "Values", "Default", "Purpose"});
    for (auto const& record : records)
        table.addRow({shown(record.getName()), joined(record.getValues()), shown(record.getDefaultValue()),
                      shown(record.getPurpose())});
    out += table.render();
}

}  // namespace

std::string renderPage(RefItem const& page) {
    std::string out;
    out += underlined(displayable(pageTitle(page)), '=');
    if (!page.getPurpose().empty()) out += indented(shown(page.getPurpose()), "");

    out += "\n";
    TextTable facts({"", ""});
    for (auto const& entity : page.getRefEntities())
        facts.addRow({"Entity", fmt::format("{} ({}, {})", shown(entity.getName()),
                                            RefEntityType::enumToString(entity.getRefEntityType()),
                                            FunctionType::enumToString(entity.getFunctionType()))});
    if (!page.getPackageName().empty()) facts.addRow({"Package", shown(page.getPackageName())});
    if (!page.getIntroduced().empty()) facts.addRow({"Introduced in", shown(page.getIntroduced())});
    facts.addRow({"Status", DeprecationStatus::enumToString(page.getDeprecationStatus())});
    facts.addRow({"Link", shown(page.getHref())});
    auto const& thumbnail = page.getAppThumbnail();
    if (!thumbnail.getFileRef().empty() || !thumbnail.getAlt().empty())
        facts.addRow({"Thumbnail", fmt::format("{} ({})", shown(thumbnail.getFileRef()), shown(thumbnail.getAlt()))});
    std::string const factLines = facts.render();
    out += factLines.substr(factLines.find('\n') + 1);  // the empty header line

    if (!page.getDescription().empty()) {
        heading(out, "Description");
        out += indented(shown(page.getDescription()), "  ");
    }
    for (auto const& group : page.getSyntaxGroups()) {
        heading(out, fmt::format("{} [{}]", group.getTitle().empty() ? "Syntax" : shown(group.getTitle()),
                                 SyntaxType::enumToString(group.getSyntaxType())));
        for (auto const& line : group.getSyntaxes()) out += indented(shown(line), "  ");
    }
    for (auto const& group : page.getInputGroups()) {
        if (group.getInputs().empty()) continue;
        heading(out, group.getTitle().empty() ? std::string("Inputs") : shown(group.getTitle()));
        TextTable table({"Name", "Values", "Default", "Syntax", "Purpose"});
        for (auto const& input : group.getInputs())
            table.addRow({shown(input.getName()) + (input.isNameValuePair() ? " (name-value)" : ""),
                          joined(input.getValues()), shown(input.getDefaultValue()),
                          SyntaxType::enumToString(input.getSyntaxType()), shown(input.getPurpose())});
        out += table.render();
    }
    if (!page.getOutputs().empty()) {
        heading(out, "Outputs");
        TextTable table({"Name", "Values", "Syntax", "Purpose"});
        for (auto const& output : page.getOutputs())
            table.addRow({shown(output.getName()), joined(output.getValues()),
                          SyntaxType::enumToString(output.getSyntaxType()), shown(output.getPurpose())});
        out += table.render();
    }
    for (auto const& group : page.getClassPropertyGroups())
        objectTable(out, group.getTitle().empty() ? std::string("Properties") : shown(group.getTitle()),
                    group.getClassProperties());
    objectTable(out, "Parameters", page.getParameters());
    if (!page.getSeeAlsoInfo().empty()) {
        heading(out, "See also");
        TextTable table({"Name", "Link"}, 48);
        for (auto const& link : page.getSeeAlsoInfo()) table.addRow({shown(link.getName()), shown(link.getUrl())});
        out += table.render();
    }
    if (!page.getExamples().empty()) {
        heading(out, "Examples");
        for (auto const& example : page.getExamples()) {
            if (!example.getTitle().empty()) out += indented(shown(example.getTitle()), "  ");
            out += indented(">> " + shown(example.getOpenCommand()), "    ");
            if (!example.getUrl().empty()) out += indented("(" + shown(example.getUrl()) + ")", "    ");
        }
    }
    return out;
}

}  // namespace refpage
