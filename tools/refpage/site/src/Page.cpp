#include <fmt/format.h>

#include <refpage/format/PageTitle.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/Text.hpp>
#include <refpage/site/Html.hpp>
#include <refpage/site/Page.hpp>
#include <refpage/site/Paths.hpp>
#include <set>

#include "Mustache.hpp"

namespace refpage {

using namespace reference::property;

namespace {


std::string joined(std::vector<std::u16string> const& values) {
    std::string text;
    for (auto const& value : values) {
        if (!text.empty()) text += " | ";
        text += utf8(value);
    }
    return text;
}

/// Builds the template data of one page, collecting the links that lead nowhere.
class PageContext {
public:
    explicit PageContext(SitePageView const& view) : view_(view), ids_{"description", "main", "search-box", "search-results"} {}

    /// A link (the `link` partial's data): href set only for a page of the set or a web URL.
    mstch::map link(std::string const& text, std::u16string const& target, std::string pointer) {
        mstch::map out{{"text", text}, {"kind", std::string("text")}};
        std::string const url = utf8(target);
        LinkTarget const resolved = resolve(url);
        switch (resolved.kind) {
            case LinkTarget::Kind::Empty: break;
            case LinkTarget::Kind::External:
                if (isWebUrl(url)) {
                    out["href"] = url;
                    out["external"] = true;
                }
                break;
            case LinkTarget::Kind::SamePage:
            case LinkTarget::Kind::Page:
                if (resolved.page == view_.index && !resolved.fragment.empty()) {
                    std::string href(1, '#');
                    href += percentEncode(resolved.fragment, true);
                    out["href"] = std::move(href);
                } else if (resolved.page < view_.pagePaths->size()) {
                    std::string href = relativeUrl(view_.path, (*view_.pagePaths)[resolved.page]);
                    if (!resolved.fragment.empty()) {
                        href += '#';
                        href += percentEncode(resolved.fragment, true);
                    }
                    out["href"] = href;
                }
                break;
            case LinkTarget::Kind::Unresolved:
                out["kind"] = std::string("unresolved");
                unresolved.push_back(std::move(pointer));
                break;
        }
        return out;
    }

    template <class Record>
    mstch::map row(Record const& record, std::string pointer, mstch::array cells) {
        mstch::map out{{"name", link(utf8(record.getName()), record.getHref(), pointer + "/Href")},
                       {"cells", std::move(cells)}};
        anchor(out, record.getHref());
        return out;
    }

    /// Sets `item["id"]` to the fragment of `target` when it leads into this page and is not taken.
    void anchor(mstch::map& item, std::u16string const& target) {
        LinkTarget const resolved = resolve(utf8(target));
        if (resolved.kind == LinkTarget::Kind::Page && resolved.page == view_.index && !resolved.fragment.empty() &&
            ids_.insert(resolved.fragment).second)
            item["id"] = resolved.fragment;
    }

    std::vector<std::string> unresolved;

private:
    /// Where `url` leads, a link into this page being one to the page of `view_.index`.
    LinkTarget resolve(std::string const& url) const {
        LinkTarget target = view_.set->resolve(url);
        if (target.kind == LinkTarget::Kind::SamePage) {
            target.kind = LinkTarget::Kind::Page;
            target.page = view_.index;
        }
        return target;
    }

    SitePageView const& view_;
    std::set<std::string> ids_;  ///< ids given so far; "description" is the template's own
};

mstch::map tablePart(std::string subtitle, mstch::array columns, mstch::array rows) {
    mstch::map part{{"columns", std::move(columns)}, {"rows", std::move(rows)}};
    if (!subtitle.empty()) part["subtitle"] = std::move(subtitle);
    return part;
}

mstch::map table(std::string title, mstch::array parts) {
    return mstch::map{{"title", std::move(title)}, {"parts", std::move(parts)}};
}

template <class Record>
mstch::array objectRows(PageContext& context, std::vector<Record> const& records, std::string const& pointer) {
    mstch::array rows;
    for (std::size_t i = 0; i < records.size(); ++i) {
        auto const& record = records[i];
        rows.push_back(context.row(record, fmt::format("{}/{}", pointer, i),
                                   mstch::array{joined(record.getValues()), utf8(record.getDefaultValue()),
                                                utf8(record.getPurpose())}));
    }
    return rows;
}

mstch::array columns(std::initializer_list<char const*> names) {
    mstch::array out;
    for (auto const* name : names) out.emplace_back(std::string(name));
    return out;
}

}  // namespace

RenderedPage renderSitePage(RefItem const& page, SitePageView const& view, SiteTemplates const& templates) {
    PageContext context(view);
    std::string const root = rootPrefix(view.path);
    mstch::map data{{"lang", std::string(view.lang)},
                    {"root", root},
                    {"csp", std::string(siteContentSecurityPolicy)},
                    {"siteTitle", std::string(view.siteTitle)},
                    {"title", pageTitle(page)}};
    auto const& entities = page.getRefEntities();
    if (!entities.empty()) data["kind"] = RefEntityType::enumToString(entities.front().getRefEntityType());
    if (page.getDeprecationStatus() != DeprecationStatus::Current)
        data["deprecated"] = DeprecationStatus::enumToString(page.getDeprecationStatus());
    if (!page.getPurpose().empty()) data["purpose"] = utf8(page.getPurpose());
    if (!page.getPackageName().empty()) data["package"] = utf8(page.getPackageName());
    if (!page.getIntroduced().empty()) data["introduced"] = utf8(page.getIntroduced());
    mstch::array entityData;
    for (auto const& entity : entities)
        entityData.push_back(mstch::map{{"name", utf8(entity.getName())},
                                        {"type", RefEntityType::enumToString(entity.getRefEntityType())},
                                        {"functionType", FunctionType::enumToString(entity.getFunctionType())}});
    data["entities"] = std::move(entityData);

    auto const& thumbnail = page.getAppThumbnail();
    if (!thumbnail.getFileRef().empty() || !thumbnail.getAlt().empty()) {
        mstch::map thumb{{"alt", utf8(thumbnail.getAlt())}};
        if (auto const file = safeRelativePath(utf8(thumbnail.getFileRef())))
            thumb["src"] = relativeUrl(view.path, *file);
        data["thumbnail"] = std::move(thumb);
    }
    if (!page.getDescription().empty()) data["description"] = descriptionHtml(utf8(page.getDescription()));

    mstch::array syntaxGroups;
    for (auto const& group : page.getSyntaxGroups()) {
        mstch::array lines;
        for (auto const& line : group.getSyntaxes()) lines.emplace_back(utf8(line));
        syntaxGroups.push_back(mstch::map{{"title", group.getTitle().empty() ? "Syntax" : utf8(group.getTitle())},
                                          {"syntaxType", SyntaxType::enumToString(group.getSyntaxType())},
                                          {"lines", std::move(lines)}});
    }
    data["syntaxGroups"] = std::move(syntaxGroups);

    mstch::array tables;
    auto const& inputGroups = page.getInputGroups();
    for (std::size_t g = 0; g < inputGroups.size(); ++g) {
        auto const& inputs = inputGroups[g].getInputs();
        mstch::array positional, nameValue;
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            auto const& input = inputs[i];
            mstch::array cells{joined(input.getValues()), utf8(input.getDefaultValue()),
                               SyntaxType::enumToString(input.getSyntaxType()), utf8(input.getPurpose())};
            (input.isNameValuePair() ? nameValue : positional)
                .push_back(context.row(input, fmt::format("/InputGroups/{}/Inputs/{}", g, i), std::move(cells)));
        }
        if (inputs.empty()) continue;
        auto const headings = columns({"Name", "Values", "Default", "Syntax", "Purpose"});
        mstch::array parts;
        if (!positional.empty()) parts.push_back(tablePart("", headings, std::move(positional)));
        if (!nameValue.empty()) parts.push_back(tablePart("Name-value arguments", headings, std::move(nameValue)));
        tables.push_back(table(inputGroups[g].getTitle().empty() ? "Inputs" : utf8(inputGroups[g].getTitle()),
                               std::move(parts)));
    }
    auto const& outputs = page.getOutputs();
    if (!outputs.empty()) {
        mstch::array rows;
        for (std::size_t i = 0; i < outputs.size(); ++i)
            rows.push_back(context.row(outputs[i], fmt::format("/Outputs/{}", i),
                                       mstch::array{joined(outputs[i].getValues()),
                                                    SyntaxType::enumToString(outputs[i].getSyntaxType()),
                                                    utf8(outputs[i].getPurpose())}));
        tables.push_back(
            table("Outputs", mstch::array{tablePart("", columns({"Name", "Values", "Syntax", "Purpose"}), rows)}));
    }
    auto const objectColumns = columns({"Name", "Values", "Default", "Purpose"});
    auto const& propertyGroups = page.getClassPropertyGroups();
    for (std::size_t g = 0; g < propertyGroups.size(); ++g) {
        auto const& properties = propertyGroups[g].getClassProperties();
        if (properties.empty()) continue;
        auto rows = objectRows(context, properties, fmt::format("/ClassPropertyGroups/{}/Properties", g));
        tables.push_back(
            table(propertyGroups[g].getTitle().empty() ? "Properties" : utf8(propertyGroups[g].getTitle()),
                  mstch::array{tablePart("", objectColumns, std::move(rows))}));
    }
    if (!page.getParameters().empty())
        tables.push_back(table("Parameters", mstch::array{tablePart("", objectColumns,
                                                                     objectRows(context, page.getParameters(),
                                                                                "/Parameters"))}));
    data["tables"] = std::move(tables);

    mstch::array examples;
    auto const& exampleRecords = page.getExamples();
    for (std::size_t i = 0; i < exampleRecords.size(); ++i) {
        auto const& example = exampleRecords[i];
        mstch::map item;
        context.anchor(item, example.getUrl());
        std::string title = utf8(example.getTitle());
        if (title.empty() && !example.getUrl().empty()) title = utf8(example.getUrl());
        if (!title.empty())
            item["title"] = mstch::map{{"link", context.link(title, example.getUrl(), fmt::format("/Examples/{}/Url", i))}};
        if (!example.getOpenCommand().empty()) item["command"] = utf8(example.getOpenCommand());
        examples.push_back(std::move(item));
    }
    data["hasExamples"] = !examples.empty();
    data["examples"] = std::move(examples);

    mstch::array seeAlso;
    auto const& links = page.getSeeAlsoInfo();
    for (std::size_t i = 0; i < links.size(); ++i) {
        std::string name = utf8(links[i].getName());
        if (name.empty()) name = utf8(links[i].getUrl());
        seeAlso.push_back(context.link(name, links[i].getUrl(), fmt::format("/SeeAlso/{}/Url", i)));
    }
    data["hasSeeAlso"] = !seeAlso.empty();
    data["seeAlso"] = std::move(seeAlso);

    RenderedPage out;
    out.html = renderMustache(templates.page, data, templates);
    out.unresolved = std::move(context.unresolved);
    return out;
}

}  // namespace refpage
