#include <fmt/format.h>

#include <map>
#include <refpage/docset/LookupIndex.hpp>
#include <refpage/format/Anchors.hpp>
#include <refpage/format/Description.hpp>
#include <refpage/site/DescriptionHtml.hpp>
#include <refpage/site/Html.hpp>
#include <refpage/site/Page.hpp>
#include <refpage/site/Paths.hpp>
#include <refpage/support/Text.hpp>
#include <utility>

#include "Mustache.hpp"
#include "PageParts.hpp"

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

/// The anchors of one page by what they stand for.
class AnchorTable {
public:
    explicit AnchorTable(std::vector<Anchor> anchors) : anchors_(std::move(anchors)) {
        for (auto const& anchor : anchors_) byKey_.emplace(std::pair(anchor.kind, anchor.indexPath), &anchor);
    }
    Anchor const* find(Anchor::Kind kind, std::vector<std::size_t> const& path) const {
        auto const found = byKey_.find(std::pair(kind, path));
        return found == byKey_.end() ? nullptr : found->second;
    }
    Anchor const* section(PageSection section, std::size_t group = 0) const {
        return find(Anchor::Kind::Section, {static_cast<std::size_t>(section), group});
    }
    std::vector<Anchor> const& all() const noexcept { return anchors_; }

private:
    std::vector<Anchor> anchors_;
    std::map<std::pair<Anchor::Kind, std::vector<std::size_t>>, Anchor const*> byKey_;
};

/// Builds the template data of one page, collecting the links that lead nowhere.
class PageContext {
public:
    PageContext(RefItem const& page, SitePageView const& view)
        : view_(view), description_(ParsedDescription::parse(utf8(page.getDescription()))),
          anchors_(anchorsOf(page, description_)) {
        inlineLinks_.link = [this](std::string_view target) { return href(target, {}); };
        inlineLinks_.image = [](std::string_view) -> std::optional<std::string> { return std::nullopt; };
    }

    AnchorTable const& anchors() const noexcept { return anchors_; }
    ParsedDescription const& description() const noexcept { return description_; }

    /// A link's href as the page writes it, or nullopt when it is shown as text; an
    /// unresolved link is recorded at `pointer` (when given).
    std::optional<std::string> href(std::string_view target, std::string const& pointer) {
        SiteLink const resolved = resolve(target);
        switch (resolved.kind) {
            case SiteLink::Kind::Empty: return std::nullopt;
            case SiteLink::Kind::External:
                if (isWebUrl(target)) return std::string(target);
                return std::nullopt;
            case SiteLink::Kind::Page: {
                std::string out;
                if (resolved.page != view_.index) {
                    if (resolved.page >= view_.pagePaths->size()) return std::nullopt;
                    out = relativeUrl(view_.path, (*view_.pagePaths)[resolved.page]);
                }
                if (!resolved.fragment.empty()) out += '#' + percentEncode(resolved.fragment, true);
                if (out.empty()) out = relativeUrl(view_.path, view_.path);
                return out;
            }
            case SiteLink::Kind::Unresolved:
                if (!pointer.empty()) unresolved.push_back(pointer);
                return std::nullopt;
        }
        return std::nullopt;
    }

    /// The `link` partial's data: href set only for a page of the set or a web URL.
    TemplateObject link(std::string const& text, std::u16string const& target, std::string const& pointer) {
        std::string const url = utf8(target);
        TemplateObject out{{"text", text}, {"segments", nameSegments(text)}, {"external", false}};
        std::optional<std::string> const written = href(url, pointer);
        out["kind"] = std::string(resolve(url).kind == SiteLink::Kind::Unresolved ? "unresolved" : "text");
        if (written) {
            out["href"] = *written;
            out["external"] = isWebUrl(*written);
        }
        return out;
    }

    /// A one-line text as HTML (CommonMark inlines); links in it resolve but are not reported.
    std::string inlineText(std::u16string const& text) { return inlineHtml(utf8(text), inlineLinks_); }

    /// An image or thumbnail path's src, or nullopt when it is unsafe or not in the site.
    std::optional<std::string> imageSource(std::string_view target) const {
        auto const path = safeRelativePath(target);
        if (!path) return std::nullopt;
        if (view_.assetExists && !(*view_.assetExists)(*path)) return std::nullopt;
        return relativeUrl(view_.path, *path);
    }

    std::vector<std::string> unresolved;

private:
    SiteLink resolve(std::string_view url) const {
        if (url.starts_with("#")) return {SiteLink::Kind::Page, view_.index, std::string(url.substr(1))};
        return (*view_.resolve)(url);
    }

    SitePageView const& view_;
    ParsedDescription description_;
    AnchorTable anchors_;
    DescriptionLinks inlineLinks_;
};

/// A docset's table-of-contents anchor name: "//apple_ref/cpp/<type>/<name>".
std::string dashAnchor(std::string_view type, std::string_view name) {
    return fmt::format("//apple_ref/cpp/{}/{}", type, percentEncode(name, true));
}

class PageData {
public:
    PageData(RefItem const& page, SitePageView const& view) : page_(page), view_(view), context_(page, view) {}

    TemplateObject build() {
        std::string const root = rootPrefix(view_.path);
        std::string const title = sitePageTitle(page_);
        data_ = TemplateObject{{"lang", std::string(view_.lang)},
                               {"root", root},
                               {"csp", std::string(siteContentSecurityPolicy)},
                               {"siteTitle", std::string(view_.siteTitle)},
                               {"title", title},
                               {"titleSegments", nameSegments(title)},
                               {"docset", view_.docset}};
        auto const& entities = page_.getRefEntities();
        if (!entities.empty()) data_["kind"] = RefEntityType::enumToString(entities.front().getRefEntityType());
        if (page_.getDeprecationStatus() != DeprecationStatus::Current)
            data_["deprecated"] = DeprecationStatus::enumToString(page_.getDeprecationStatus());
        if (!page_.getPurpose().empty()) {
            data_["purpose"] = utf8(page_.getPurpose());
            data_["purposeHtml"] = context_.inlineText(page_.getPurpose());
        }
        if (!page_.getIntroduced().empty()) data_["introduced"] = utf8(page_.getIntroduced());
        navigation(root, title);
        facts();
        thumbnail();
        description();
        syntax();
        tables();
        examples();
        seeAlso();
        toc();
        return std::move(data_);
    }

    std::vector<std::string> unresolved() { return std::move(context_.unresolved); }

private:
    std::string dash(std::string_view type, std::string const& name) const {
        return view_.docset ? dashAnchor(type, name) : std::string();
    }

    /// Sets `key` on `object` only when `value` is not empty (mustache takes "" as true).
    static void setIf(TemplateObject& object, std::string const& key, std::string value) {
        if (!value.empty()) object[key] = std::move(value);
    }

    void navigation(std::string const& root, std::string const& title) {
        std::string const package = utf8(page_.getPackageName());
        SiteNavigation const* nav = view_.navigation;
        std::string packageHref = root + std::string(siteIndexPath);
        if (nav && view_.index < nav->pages().size()) {
            SitePackage const& home = nav->packages()[nav->packageOf(view_.index)];
            packageHref += '#' + percentEncode(home.id, true);
            TemplateList pages;
            for (std::size_t p : nav->sidebarOf(view_.index)) {
                SitePageSummary const& summary = nav->pages()[p];
                pages.push_back(TemplateObject{{"href", relativeUrl(view_.path, summary.path)},
                                               {"segments", nameSegments(summary.title)},
                                               {"current", p == view_.index},
                                               {"deprecatedEntry", summary.deprecated}});
            }
            TemplateObject sidebar{{"packageName", home.name}, {"pages", std::move(pages)}};
            if (home.pages.size() > sidebarPageLimit)
                sidebar["more"] = TemplateObject{{"href", packageHref}, {"count", std::to_string(home.pages.size())}};
            data_["sidebar"] = std::move(sidebar);
            TemplateObject crumbs{{"title", title}};
            if (!package.empty()) crumbs["crumbPackage"] = TemplateObject{{"name", package}, {"href", packageHref}};
            data_["breadcrumbs"] = std::move(crumbs);
        }
        if (!package.empty()) {
            data_["package"] = package;
            data_["packageHref"] = packageHref;
        }
    }

    void facts() {
        TemplateList list;
        auto const& entities = page_.getRefEntities();
        for (std::size_t e = 0; e < entities.size(); ++e) {
            std::string const name = utf8(entities[e].getName());
            TemplateObject item{{"name", name},
                                {"segments", nameSegments(name)},
                                {"type", RefEntityType::enumToString(entities[e].getRefEntityType())},
                                {"functionType", FunctionType::enumToString(entities[e].getFunctionType())}};
            if (Anchor const* anchor = context_.anchors().find(Anchor::Kind::Entity, {e})) {
                item["entityId"] = anchor->id;
                setIf(item, "entityDash", dash(dashEntryType(entities[e].getRefEntityType()), name));
            }
            list.push_back(std::move(item));
        }
        data_["entities"] = std::move(list);
    }

    void thumbnail() {
        auto const& thumbnail = page_.getAppThumbnail();
        if (thumbnail.getFileRef().empty() && thumbnail.getAlt().empty()) return;
        std::string alt = utf8(thumbnail.getAlt());
        std::string const file = utf8(thumbnail.getFileRef());
        TemplateObject thumb;
        if (auto const src = file.empty() ? std::nullopt : context_.imageSource(file)) thumb["src"] = *src;
        else if (alt.empty()) alt = "Image " + file + " is not available";
        thumb["alt"] = std::move(alt);
        data_["thumbnail"] = std::move(thumb);
    }

    TemplateObject section(Anchor const& anchor) const {
        TemplateObject out{{"id", anchor.id}, {"title", anchor.name}};
        setIf(out, "sectionDash", dash("Section", anchor.name));
        return out;
    }

    void description() {
        Anchor const* anchor = context_.anchors().section(PageSection::Description);
        if (!anchor) return;
        DescriptionLinks links;
        links.link = [this](std::string_view target) { return context_.href(target, "/Description"); };
        links.image = [this](std::string_view target) { return context_.imageSource(target); };
        for (auto const& each : context_.anchors().all())
            if (each.kind == Anchor::Kind::Heading) links.headingIds.push_back(each.id);
        data_["descriptionSection"] = section(*anchor);
        data_["description"] = descriptionHtml(context_.description(), links);
    }

    void syntax() {
        TemplateList groups;
        auto const& syntaxGroups = page_.getSyntaxGroups();
        for (std::size_t g = 0; g < syntaxGroups.size(); ++g) {
            Anchor const* anchor = context_.anchors().section(PageSection::Syntax, g);
            if (!anchor) continue;
            TemplateList lines;
            for (auto const& line : syntaxGroups[g].getSyntaxes()) lines.emplace_back(utf8(line));
            TemplateObject group = section(*anchor);
            group["syntaxType"] = SyntaxType::enumToString(syntaxGroups[g].getSyntaxType());
            group["lines"] = std::move(lines);
            groups.push_back(std::move(group));
        }
        data_["syntaxGroups"] = std::move(groups);
    }

    static TemplateObject segmentsCell(std::string const& text) {
        TemplateObject cell{{"kind", std::string("value")}};
        if (!text.empty()) cell["segments"] = nameSegments(text);
        return cell;
    }
    TemplateObject htmlCell(std::u16string const& text) {
        TemplateObject cell{{"kind", std::string("prose")}};
        setIf(cell, "html", context_.inlineText(text));
        return cell;
    }

    template <class Record>
    TemplateObject row(Record const& record, Anchor const* anchor, std::string const& pointer, TemplateList cells,
                       std::string_view dashType) {
        std::string const name = utf8(record.getName());
        TemplateObject out{{"name", context_.link(name, record.getHref(), pointer + "/Href")},
                           {"cells", std::move(cells)},
                           {"label", name.empty() ? std::string("row") : name}};
        out["id"] = anchor ? anchor->id : std::string("row");
        if (!dashType.empty()) setIf(out, "rowDash", dash(dashType, name));
        return out;
    }

    static TemplateObject block(std::string subtitle, std::initializer_list<char const*> names, TemplateList rows,
                                std::string const& label) {
        TemplateList columns;
        for (auto const* name : names) columns.emplace_back(std::string(name));
        TemplateObject part{{"columns", std::move(columns)}, {"rows", std::move(rows)}, {"label", label}};
        setIf(part, "subtitle", std::move(subtitle));
        return part;
    }

    template <class Record>
    TemplateList objectRows(std::vector<Record> const& records, Anchor::Kind kind, std::vector<std::size_t> prefix,
                            std::string const& pointer, std::string_view dashType) {
        TemplateList rows;
        for (std::size_t i = 0; i < records.size(); ++i) {
            auto path = prefix;
            path.push_back(i);
            auto const& record = records[i];
            rows.push_back(row(record, context_.anchors().find(kind, path), fmt::format("{}/{}", pointer, i),
                               TemplateList{segmentsCell(joined(record.getValues())),
                                            segmentsCell(utf8(record.getDefaultValue())), htmlCell(record.getPurpose())},
                               dashType));
        }
        return rows;
    }

    void tables() {
        TemplateList list;
        auto const& inputGroups = page_.getInputGroups();
        for (std::size_t g = 0; g < inputGroups.size(); ++g) {
            Anchor const* anchor = context_.anchors().section(PageSection::Inputs, g);
            if (!anchor) continue;
            auto const& inputs = inputGroups[g].getInputs();
            TemplateList positional, nameValue;
            for (std::size_t i = 0; i < inputs.size(); ++i) {
                auto const& input = inputs[i];
                TemplateList cells{segmentsCell(joined(input.getValues())), segmentsCell(utf8(input.getDefaultValue())),
                                   segmentsCell(SyntaxType::enumToString(input.getSyntaxType())),
                                   htmlCell(input.getPurpose())};
                (input.isNameValuePair() ? nameValue : positional)
                    .push_back(row(input, context_.anchors().find(Anchor::Kind::Input, {g, i}),
                                   fmt::format("/InputGroups/{}/Inputs/{}", g, i), std::move(cells), {}));
            }
            TemplateList blocks;
            if (!positional.empty())
                blocks.push_back(block("", {"Name", "Values", "Default", "Syntax", "Purpose"}, std::move(positional),
                                       anchor->name));
            if (!nameValue.empty())
                blocks.push_back(block("Name-value arguments", {"Name", "Values", "Default", "Syntax", "Purpose"},
                                       std::move(nameValue), anchor->name + ": name-value arguments"));
            TemplateObject table = section(*anchor);
            table["blocks"] = std::move(blocks);
            list.push_back(std::move(table));
        }
        if (Anchor const* anchor = context_.anchors().section(PageSection::Outputs)) {
            auto const& outputs = page_.getOutputs();
            TemplateList rows;
            for (std::size_t i = 0; i < outputs.size(); ++i)
                rows.push_back(row(outputs[i], context_.anchors().find(Anchor::Kind::Output, {i}),
                                   fmt::format("/Outputs/{}", i),
                                   TemplateList{segmentsCell(joined(outputs[i].getValues())),
                                                segmentsCell(SyntaxType::enumToString(outputs[i].getSyntaxType())),
                                                htmlCell(outputs[i].getPurpose())},
                                   {}));
            TemplateObject table = section(*anchor);
            table["blocks"] = TemplateList{block("", {"Name", "Values", "Syntax", "Purpose"}, std::move(rows), anchor->name)};
            list.push_back(std::move(table));
        }
        auto const& propertyGroups = page_.getClassPropertyGroups();
        for (std::size_t g = 0; g < propertyGroups.size(); ++g) {
            Anchor const* anchor = context_.anchors().section(PageSection::Properties, g);
            if (!anchor) continue;
            TemplateObject table = section(*anchor);
            table["blocks"] = TemplateList{
                block("", {"Name", "Values", "Default", "Purpose"},
                      objectRows(propertyGroups[g].getClassProperties(), Anchor::Kind::ClassProperty, {g},
                                 fmt::format("/ClassPropertyGroups/{}/Properties", g), "Property"),
                      anchor->name)};
            list.push_back(std::move(table));
        }
        if (Anchor const* anchor = context_.anchors().section(PageSection::Parameters)) {
            TemplateObject table = section(*anchor);
            table["blocks"] = TemplateList{block("", {"Name", "Values", "Default", "Purpose"},
                                                 objectRows(page_.getParameters(), Anchor::Kind::Parameter, {},
                                                            "/Parameters", {}),
                                                 anchor->name)};
            list.push_back(std::move(table));
        }
        data_["tables"] = std::move(list);
    }

    void examples() {
        Anchor const* anchor = context_.anchors().section(PageSection::Examples);
        if (!anchor) return;
        TemplateList list;
        auto const& records = page_.getExamples();
        for (std::size_t i = 0; i < records.size(); ++i) {
            auto const& example = records[i];
            Anchor const* own = context_.anchors().find(Anchor::Kind::Example, {i});
            std::string const id = own ? own->id : fmt::format("example-{}", i + 1);
            TemplateObject item{{"id", id}, {"label", fmt::format("example {}", i + 1)}};
            item["title"] = example.getTitle().empty() ? escapeHtml(exampleTitle(page_, i))
                                                       : context_.inlineText(example.getTitle());
            // The heading links to the example's own place only when that is elsewhere.
            std::optional<std::string> const href = context_.href(utf8(example.getUrl()), fmt::format("/Examples/{}/Url", i));
            if (href && !href->starts_with('#') && *href != relativeUrl(view_.path, view_.path) &&
                !href->starts_with(relativeUrl(view_.path, view_.path) + "#"))
                item["href"] = *href;
            setIf(item, "command", utf8(example.getOpenCommand()));
            list.push_back(std::move(item));
        }
        TemplateObject out = section(*anchor);
        out["examples"] = std::move(list);
        data_["examplesSection"] = std::move(out);
    }

    void seeAlso() {
        Anchor const* anchor = context_.anchors().section(PageSection::SeeAlso);
        if (!anchor) return;
        TemplateList links;
        auto const& records = page_.getSeeAlsoInfo();
        for (std::size_t i = 0; i < records.size(); ++i) {
            std::string name = utf8(records[i].getName());
            if (name.empty()) name = utf8(records[i].getUrl());
            links.push_back(context_.link(name, records[i].getUrl(), fmt::format("/SeeAlso/{}/Url", i)));
        }
        TemplateObject out = section(*anchor);
        out["links"] = std::move(links);
        data_["seeAlsoSection"] = std::move(out);
    }

    void toc() {
        TemplateList sections;
        for (auto const& anchor : context_.anchors().all())
            if (anchor.kind == Anchor::Kind::Section)
                sections.push_back(TemplateObject{{"id", anchor.id}, {"title", anchor.name}});
        if (sections.size() >= 2) data_["toc"] = TemplateObject{{"sections", std::move(sections)}};
    }

    RefItem const& page_;
    SitePageView const& view_;
    PageContext context_;
    TemplateObject data_;
};

}  // namespace

std::string sitePageTitle(RefItem const& page) {
    auto const& entities = page.getRefEntities();
    if (!entities.empty() && !entities.front().getName().empty()) return utf8(entities.front().getName());
    if (!page.getHref().empty()) return utf8(page.getHref());
    return "Untitled page";
}

RenderedPage renderSitePage(RefItem const& page, SitePageView const& view, SiteTemplates const& templates) {
    auto const compiled = templates.compiled();
    PageData data(page, view);
    TemplateData const built(data.build());
    RenderedPage out;
    out.html = compiled->page().render(built);
    out.unresolved = data.unresolved();
    return out;
}

}  // namespace refpage
