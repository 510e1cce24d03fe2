#include <fmt/format.h>

#include <refpage/format/PageTitle.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/Text.hpp>
#include <algorithm>
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
        LinkTarget const resolved = resolve(target);
        switch (resolved.kind) {
            case LinkTarget::Kind::Empty: return std::nullopt;
            case LinkTarget::Kind::External:
                if (isWebUrl(target)) return std::string(target);
                return std::nullopt;
            case LinkTarget::Kind::SamePage:
            case LinkTarget::Kind::Page: {
                std::string out;
                if (resolved.page != view_.index) {
                    if (resolved.page >= view_.pagePaths->size()) return std::nullopt;
                    out = relativeUrl(view_.path, (*view_.pagePaths)[resolved.page]);
                }
                if (!resolved.fragment.empty()) out += '#' + percentEncode(resolved.fragment, true);
                if (out.empty()) out = relativeUrl(view_.path, view_.path);
                return out;
            }
            case LinkTarget::Kind::Unresolved:
                if (!pointer.empty()) unresolved.push_back(pointer);
                return std::nullopt;
        }
        return std::nullopt;
    }

    /// Fills `out` as the `link` partial reads it: href set only for a page of the set or a web URL.
    void link(TemplateNode out, std::string const& text, std::u16string const& target, std::string const& pointer) {
        std::string const url = utf8(target);
        out.set("text", text);
        setSegments(out, "segments", text);
        std::optional<std::string> const written = href(url, pointer);
        out.set("kind", resolve(url).kind == LinkTarget::Kind::Unresolved ? "unresolved" : "text");
        out.set("external", written && isWebUrl(*written));
        if (written) out.set("href", *written);
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
    /// Where `url` leads, a link into this page being one to the page of `view_.index`.
    LinkTarget resolve(std::string_view url) const {
        LinkTarget target = view_.set->resolve(url);
        if (target.kind == LinkTarget::Kind::SamePage) {
            target.kind = LinkTarget::Kind::Page;
            target.page = view_.index;
        }
        return target;
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
    PageData(RefItem const& page, SitePageView const& view)
        : page_(page), view_(view), context_(page, view), data_(TemplateData::type::object), top_(data_) {}

    TemplateData const& build() {
        std::string const root = rootPrefix(view_.path);
        std::string const title = pageTitle(page_);
        top_.set("lang", std::string(view_.lang))
            .set("root", root)
            .set("csp", std::string(siteContentSecurityPolicy))
            .set("siteTitle", std::string(view_.siteTitle))
            .set("title", title)
            .set("docset", view_.docset);
        setSegments(top_, "titleSegments", title);
        auto const& entities = page_.getRefEntities();
        if (!entities.empty()) top_.set("kind", RefEntityType::enumToString(entities.front().getRefEntityType()));
        if (page_.getDeprecationStatus() != DeprecationStatus::Current)
            top_.set("deprecated", DeprecationStatus::enumToString(page_.getDeprecationStatus()));
        if (!page_.getPurpose().empty()) {
            top_.set("purpose", utf8(page_.getPurpose()));
            top_.setIf("purposeHtml", context_.inlineText(page_.getPurpose()));
        }
        top_.setIf("introduced", utf8(page_.getIntroduced()));
        navigation(root, title);
        facts();
        thumbnail();
        description();
        syntax();
        tables();
        examples();
        seeAlso();
        toc();
        return data_;
    }

    std::vector<std::string> unresolved() { return std::move(context_.unresolved); }

private:
    std::string dash(std::string_view type, std::string const& name) const {
        return view_.docset ? dashAnchor(type, name) : std::string();
    }

    void navigation(std::string const& root, std::string const& title) {
        std::string const package = utf8(page_.getPackageName());
        SiteNavigation const* nav = view_.navigation;
        std::string packageHref = root + std::string(siteIndexPath);
        if (nav && view_.index < nav->pages().size()) {
            SitePackage const& home = nav->packages()[nav->packageOf(view_.index)];
            packageHref += '#' + percentEncode(home.id, true);
            TemplateNode sidebar = top_.object("sidebar");
            sidebar.set("packageName", home.name);
            TemplateNode pages = sidebar.list("pages");
            for (std::size_t p : nav->sidebarOf(view_.index)) {
                SitePageSummary const& summary = nav->pages()[p];
                TemplateNode item = pages.append();
                item.set("href", relativeUrl(view_.path, summary.path))
                    .set("current", p == view_.index)
                    .set("deprecatedEntry", summary.deprecated);
                setSegments(item, "segments", summary.title);
            }
            if (home.pages.size() > sidebarPageLimit)
                sidebar.object("more").set("href", packageHref).set("count", std::to_string(home.pages.size()));
            TemplateNode crumbs = top_.object("breadcrumbs");
            crumbs.set("title", title);
            if (!package.empty()) crumbs.object("crumbPackage").set("name", package).set("href", packageHref);
        }
        if (!package.empty()) top_.set("package", package).set("packageHref", packageHref);
    }

    void facts() {
        TemplateNode list = top_.list("entities");
        auto const& entities = page_.getRefEntities();
        for (std::size_t e = 0; e < entities.size(); ++e) {
            std::string const name = utf8(entities[e].getName());
            TemplateNode item = list.append();
            item.set("name", name)
                .set("type", RefEntityType::enumToString(entities[e].getRefEntityType()))
                .set("functionType", FunctionType::enumToString(entities[e].getFunctionType()));
            setSegments(item, "segments", name);
            if (Anchor const* anchor = context_.anchors().find(Anchor::Kind::Entity, {e})) {
                item.set("entityId", anchor->id);
                item.setIf("entityDash", dash(dashEntryType(entities[e].getRefEntityType()), name));
            }
        }
    }

    void thumbnail() {
        auto const& thumbnail = page_.getAppThumbnail();
        if (thumbnail.getFileRef().empty() && thumbnail.getAlt().empty()) return;
        std::string alt = utf8(thumbnail.getAlt());
        std::string const file = utf8(thumbnail.getFileRef());
        TemplateNode thumb = top_.object("thumbnail");
        if (auto const src = file.empty() ? std::nullopt : context_.imageSource(file)) thumb.set("src", *src);
        else if (alt.empty()) alt = "Image " + file + " is not available";
        thumb.set("alt", alt);
    }

    void section(TemplateNode out, Anchor const& anchor) const {
        out.set("id", anchor.id).set("title", anchor.name);
        out.setIf("sectionDash", dash("Section", anchor.name));
    }

    void description() {
        Anchor const* anchor = context_.anchors().section(PageSection::Description);
        if (!anchor) return;
        DescriptionLinks links;
        links.link = [this](std::string_view target) { return context_.href(target, "/Description"); };
        links.image = [this](std::string_view target) { return context_.imageSource(target); };
        for (auto const& each : context_.anchors().all())
            if (each.kind == Anchor::Kind::Heading) links.headingIds.push_back(each.id);
        section(top_.object("descriptionSection"), *anchor);
        top_.set("description", descriptionHtml(context_.description(), links));
    }

    void syntax() {
        TemplateNode groups = top_.list("syntaxGroups");
        auto const& syntaxGroups = page_.getSyntaxGroups();
        for (std::size_t g = 0; g < syntaxGroups.size(); ++g) {
            Anchor const* anchor = context_.anchors().section(PageSection::Syntax, g);
            if (!anchor) continue;
            TemplateNode group = groups.append();
            section(group, *anchor);
            group.set("syntaxType", SyntaxType::enumToString(syntaxGroups[g].getSyntaxType()));
            TemplateNode lines = group.list("lines");
            for (auto const& line : syntaxGroups[g].getSyntaxes()) lines.append(utf8(line));
        }
    }

    static void valueCell(TemplateNode cells, std::string const& text) {
        TemplateNode cell = cells.append();
        cell.set("kind", "value");
        if (!text.empty()) setSegments(cell, "segments", text);
    }
    void proseCell(TemplateNode cells, std::u16string const& text) {
        cells.append().set("kind", "prose").setIf("html", context_.inlineText(text));
    }

    /// A row's name, id and label; returns its cells' list for the caller to fill.
    template <class Record>
    TemplateNode row(TemplateNode out, Record const& record, Anchor const* anchor, std::string const& pointer,
                     std::string_view dashType) {
        std::string const name = utf8(record.getName());
        context_.link(out.object("name"), name, record.getHref(), pointer + "/Href");
        out.set("label", name.empty() ? std::string("row") : name).set("id", anchor ? anchor->id : std::string("row"));
        if (!dashType.empty()) out.setIf("rowDash", dash(dashType, name));
        return out.list("cells");
    }

    /// A table part with its columns; returns its rows' list for the caller to fill.
    static TemplateNode block(TemplateNode blocks, std::string const& subtitle, std::initializer_list<char const*> names,
                              std::string const& label) {
        TemplateNode part = blocks.append();
        TemplateNode columns = part.list("columns");
        for (auto const* name : names) columns.append(name);
        part.set("label", label).setIf("subtitle", subtitle);
        return part.list("rows");
    }

    template <class Record>
    void objectRows(TemplateNode rows, std::vector<Record> const& records, Anchor::Kind kind,
                    std::vector<std::size_t> prefix, std::string const& pointer, std::string_view dashType) {
        for (std::size_t i = 0; i < records.size(); ++i) {
            auto path = prefix;
            path.push_back(i);
            auto const& record = records[i];
            TemplateNode cells = row(rows.append(), record, context_.anchors().find(kind, path),
                                     fmt::format("{}/{}", pointer, i), dashType);
            valueCell(cells, joined(record.getValues()));
            valueCell(cells, utf8(record.getDefaultValue()));
            proseCell(cells, record.getPurpose());
        }
    }

    void tables() {
        TemplateNode list = top_.list("tables");
        auto const& inputGroups = page_.getInputGroups();
        for (std::size_t g = 0; g < inputGroups.size(); ++g) {
            Anchor const* anchor = context_.anchors().section(PageSection::Inputs, g);
            if (!anchor) continue;
            auto const& inputs = inputGroups[g].getInputs();
            TemplateNode table = list.append();
            section(table, *anchor);
            TemplateNode blocks = table.list("blocks");
            for (bool nameValue : {false, true}) {
                if (std::none_of(inputs.begin(), inputs.end(), [&](auto const& in) { return in.isNameValuePair() == nameValue; }))
                    continue;
                TemplateNode rows = block(blocks, nameValue ? "Name-value arguments" : "",
                                          {"Name", "Values", "Default", "Syntax", "Purpose"},
                                          nameValue ? anchor->name + ": name-value arguments" : anchor->name);
                for (std::size_t i = 0; i < inputs.size(); ++i) {
                    auto const& input = inputs[i];
                    if (input.isNameValuePair() != nameValue) continue;
                    TemplateNode cells = row(rows.append(), input, context_.anchors().find(Anchor::Kind::Input, {g, i}),
                                             fmt::format("/InputGroups/{}/Inputs/{}", g, i), {});
                    valueCell(cells, joined(input.getValues()));
                    valueCell(cells, utf8(input.getDefaultValue()));
                    valueCell(cells, SyntaxType::enumToString(input.getSyntaxType()));
                    proseCell(cells, input.getPurpose());
                }
            }
        }
        if (Anchor const* anchor = context_.anchors().section(PageSection::Outputs)) {
            auto const& outputs = page_.getOutputs();
            TemplateNode table = list.append();
            section(table, *anchor);
            TemplateNode rows = block(table.list("blocks"), "", {"Name", "Values", "Syntax", "Purpose"}, anchor->name);
            for (std::size_t i = 0; i < outputs.size(); ++i) {
                TemplateNode cells = row(rows.append(), outputs[i], context_.anchors().find(Anchor::Kind::Output, {i}),
                                         fmt::format("/Outputs/{}", i), {});
                valueCell(cells, joined(outputs[i].getValues()));
                valueCell(cells, SyntaxType::enumToString(outputs[i].getSyntaxType()));
                proseCell(cells, outputs[i].getPurpose());
            }
        }
        auto const& propertyGroups = page_.getClassPropertyGroups();
        for (std::size_t g = 0; g < propertyGroups.size(); ++g) {
            Anchor const* anchor = context_.anchors().section(PageSection::Properties, g);
            if (!anchor) continue;
            TemplateNode table = list.append();
            section(table, *anchor);
            objectRows(block(table.list("blocks"), "", {"Name", "Values", "Default", "Purpose"}, anchor->name),
                       propertyGroups[g].getClassProperties(), Anchor::Kind::ClassProperty, {g},
                       fmt::format("/ClassPropertyGroups/{}/Properties", g), "Property");
        }
        if (Anchor const* anchor = context_.anchors().section(PageSection::Parameters)) {
            TemplateNode table = list.append();
            section(table, *anchor);
            objectRows(block(table.list("blocks"), "", {"Name", "Values", "Default", "Purpose"}, anchor->name),
                       page_.getParameters(), Anchor::Kind::Parameter, {}, "/Parameters", {});
        }
    }

    void examples() {
        Anchor const* anchor = context_.anchors().section(PageSection::Examples);
        if (!anchor) return;
        TemplateNode out = top_.object("examplesSection");
        section(out, *anchor);
        TemplateNode list = out.list("examples");
        auto const& records = page_.getExamples();
        std::string const self = relativeUrl(view_.path, view_.path);
        for (std::size_t i = 0; i < records.size(); ++i) {
            auto const& example = records[i];
            Anchor const* own = context_.anchors().find(Anchor::Kind::Example, {i});
            TemplateNode item = list.append();
            item.set("id", own ? own->id : fmt::format("example-{}", i + 1)).set("label", fmt::format("example {}", i + 1));
            item.set("title", example.getTitle().empty() ? escapeHtml(exampleTitle(page_, i))
                                                         : context_.inlineText(example.getTitle()));
            // The heading links to the example's own place only when that is elsewhere.
            std::optional<std::string> const href = context_.href(utf8(example.getUrl()), fmt::format("/Examples/{}/Url", i));
            if (href && !href->starts_with('#') && *href != self && !href->starts_with(self + "#")) item.set("href", *href);
            item.setIf("command", utf8(example.getOpenCommand()));
        }
    }

    void seeAlso() {
        Anchor const* anchor = context_.anchors().section(PageSection::SeeAlso);
        if (!anchor) return;
        TemplateNode out = top_.object("seeAlsoSection");
        section(out, *anchor);
        TemplateNode links = out.list("links");
        auto const& records = page_.getSeeAlsoInfo();
        for (std::size_t i = 0; i < records.size(); ++i) {
            std::string name = utf8(records[i].getName());
            if (name.empty()) name = utf8(records[i].getUrl());
            context_.link(links.append(), name, records[i].getUrl(), fmt::format("/SeeAlso/{}/Url", i));
        }
    }

    void toc() {
        std::size_t count = 0;
        for (auto const& anchor : context_.anchors().all()) count += anchor.kind == Anchor::Kind::Section;
        if (count < 2) return;
        TemplateNode sections = top_.object("toc").list("sections");
        for (auto const& anchor : context_.anchors().all())
            if (anchor.kind == Anchor::Kind::Section) sections.append().set("id", anchor.id).set("title", anchor.name);
    }

    RefItem const& page_;
    SitePageView const& view_;
    PageContext context_;
    TemplateData data_;
    TemplateNode top_;
};

}  // namespace

RenderedPage renderSitePage(RefItem const& page, SitePageView const& view, SiteTemplates const& templates) {
    auto const compiled = templates.compiled();
    PageData data(page, view);
    RenderedPage out;
    out.html = compiled->page().render(data.build());
    out.unresolved = data.unresolved();
    return out;
}

}  // namespace refpage
