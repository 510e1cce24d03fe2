#include <fmt/format.h>

#include <refpage/format/Anchors.hpp>
#include <refpage/format/Description.hpp>
#include <refpage/support/Text.hpp>
#include <set>
#include <string>

#include <cmark-gfm.h>

namespace refpage {

using namespace reference::property;

namespace {

constexpr std::size_t maxIdBytes = 200;

/// The fragment of `link` when it leads into the page whose Href is `href`; else empty.
std::string ownFragment(std::string_view link, std::string_view href) {
    std::size_t const hash = link.find('#');
    if (hash == std::string_view::npos || hash + 1 == link.size()) return {};
    std::string_view page = link.substr(0, hash);
    while (page.starts_with("./")) page.remove_prefix(2);
    std::string_view own = href.substr(0, href.find('#'));
    while (own.starts_with("./")) own.remove_prefix(2);
    if (!page.empty() && page != own) return {};
    std::string_view const fragment = link.substr(hash + 1);
    if (fragment.size() > maxIdBytes) return {};
    for (unsigned char c : fragment)
        if (c <= 0x20 || c == 0x7f) return {};
    return std::string(fragment);
}

class Builder {
public:
    explicit Builder(RefItem const& page) : page_(page), href_(utf8(page.getHref())) {
        for (auto id : reservedPageIds) taken_.emplace(id);
    }

    /// Claims own fragments first, in page order, so that no derived id takes one a later row names.
    void claim(std::u16string const& link) {
        std::string fragment = ownFragment(utf8(link), href_);
        if (!fragment.empty()) claimed_.insert(std::move(fragment));
    }

    /// Adds an anchor: its own fragment when `link` leads into the page and no earlier anchor
    /// holds it, else `derived` made unique.
    void add(Anchor::Kind kind, std::vector<std::size_t> path, std::string name, std::string const& derived,
             std::u16string const* link = nullptr) {
        std::string id;
        if (link) {
            std::string fragment = ownFragment(utf8(*link), href_);
            if (!fragment.empty() && !taken_.contains(fragment)) id = std::move(fragment);
        }
        if (id.empty()) id = unique(derived);
        taken_.insert(id);
        anchors.push_back({kind, std::move(path), std::move(id), std::move(name)});
    }

    void section(PageSection section, std::size_t group, std::string_view preferred = {}) {
        std::string title = sectionTitle(page_, section, group);
        std::string const derived = preferred.empty() ? idFromText(title, "section") : std::string(preferred);
        add(Anchor::Kind::Section, {static_cast<std::size_t>(section), group}, std::move(title), derived);
    }

    /// A row's anchor: "prefix-name" unless its own link names one.
    void row(Anchor::Kind kind, std::vector<std::size_t> path, std::u16string const& name, std::string_view prefix,
             std::u16string const& link) {
        std::string text = utf8(name);
        std::string const derived = idFromText(std::string(prefix) + "-" + text, prefix);
        add(kind, std::move(path), std::move(text), derived, &link);
    }

    std::vector<Anchor> anchors;

private:
    std::string unique(std::string id) const {
        if (!taken_.contains(id) && !claimed_.contains(id)) return id;
        for (std::size_t n = 2;; ++n) {
            std::string candidate = fmt::format("{}-{}", id, n);
            if (!taken_.contains(candidate) && !claimed_.contains(candidate)) return candidate;
        }
    }

    RefItem const& page_;
    std::string href_;
    std::set<std::string, std::less<>> taken_;
    std::set<std::string, std::less<>> claimed_;
};

template <class Record>
void claimAll(Builder& builder, std::vector<Record> const& records) {
    for (auto const& record : records) builder.claim(record.getHref());
}

/// The plain texts of the description's headings, in order.
std::vector<std::string> headingsOf(ParsedDescription const& description) {
    std::vector<std::string> headings;
    cmark_iter* iter = cmark_iter_new(description.root());
    for (cmark_event_type event; (event = cmark_iter_next(iter)) != CMARK_EVENT_DONE;)
        if (event == CMARK_EVENT_ENTER && cmark_node_get_type(cmark_iter_get_node(iter)) == CMARK_NODE_HEADING)
            headings.push_back(plainTextOf(cmark_iter_get_node(iter)));
    cmark_iter_free(iter);
    return headings;
}

}  // namespace

std::string idFromText(std::string_view text, std::string_view fallback) {
    std::string id;
    bool dash = false;
    for (std::size_t i = 0; i < text.size();) {
        unsigned char const c = static_cast<unsigned char>(text[i]);
        // A whole UTF-8 sequence (lead byte and continuation bytes), or one ASCII byte.
        std::size_t length = 1;
        if (c >= 0xc0)
            while (i + length < text.size() && (static_cast<unsigned char>(text[i + length]) & 0xc0) == 0x80) ++length;
        bool const keep = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
                          c == '.' || c >= 0xc0;
        if (keep) {
            if (id.size() + length + 1 > maxIdBytes) break;
            if (dash && !id.empty()) id += '-';
            dash = false;
            id.append(text.substr(i, length));
        } else {
            dash = true;
        }
        i += length;
    }
    return id.empty() ? std::string(fallback) : id;
}

std::string sectionTitle(RefItem const& page, PageSection section, std::size_t group) {
    auto titled = [](std::u16string const& title, char const* otherwise) {
        return title.empty() ? std::string(otherwise) : utf8(title);
    };
    switch (section) {
        case PageSection::Description: return "Description";
        case PageSection::Syntax:
            return group < page.getSyntaxGroups().size() ? titled(page.getSyntaxGroups()[group].getTitle(), "Syntax")
                                                         : "Syntax";
        case PageSection::Inputs:
            return group < page.getInputGroups().size() ? titled(page.getInputGroups()[group].getTitle(), "Inputs")
                                                        : "Inputs";
        case PageSection::Outputs: return "Outputs";
        case PageSection::Properties:
            return group < page.getClassPropertyGroups().size()
                       ? titled(page.getClassPropertyGroups()[group].getTitle(), "Properties")
                       : "Properties";
        case PageSection::Parameters: return "Parameters";
        case PageSection::Examples: return "Examples";
        case PageSection::SeeAlso: return "See also";
    }
    return "Section";
}

std::string exampleTitle(RefItem const& page, std::size_t index) {
    auto const& examples = page.getExamples();
    if (index < examples.size() && !examples[index].getTitle().empty()) return utf8(examples[index].getTitle());
    return fmt::format("Example {}", index + 1);
}

std::vector<Anchor> anchorsOf(RefItem const& page) {
    return anchorsOf(page, ParsedDescription::parse(utf8(page.getDescription())));
}

std::vector<Anchor> anchorsOf(RefItem const& page, ParsedDescription const& description) {
    Builder builder(page);
    for (auto const& group : page.getInputGroups()) claimAll(builder, group.getInputs());
    claimAll(builder, page.getOutputs());
    for (auto const& group : page.getClassPropertyGroups()) claimAll(builder, group.getClassProperties());
    claimAll(builder, page.getParameters());
    for (auto const& example : page.getExamples()) builder.claim(example.getUrl());

    auto const& entities = page.getRefEntities();
    for (std::size_t e = 1; e < entities.size(); ++e) {
        // A class and its constructor documented together are one thing: the constructor needs no anchor.
        if (entities[e].getName() == entities[0].getName()) continue;
        std::string name = utf8(entities[e].getName());
        std::string const derived = idFromText(name, "entity");
        builder.add(Anchor::Kind::Entity, {e}, std::move(name), derived);
    }
    if (!page.getDescription().empty()) {
        builder.section(PageSection::Description, 0, "description");
        auto const headings = headingsOf(description);
        for (std::size_t h = 0; h < headings.size(); ++h) builder.add(Anchor::Kind::Heading, {h}, headings[h], idFromText(headings[h], "heading"));
    }
    for (std::size_t g = 0; g < page.getSyntaxGroups().size(); ++g) builder.section(PageSection::Syntax, g, "syntax");
    auto const& inputGroups = page.getInputGroups();
    for (std::size_t g = 0; g < inputGroups.size(); ++g) {
        auto const& inputs = inputGroups[g].getInputs();
        if (inputs.empty()) continue;
        builder.section(PageSection::Inputs, g);
        // Rows in the order the page shows them: positional inputs, then name-value ones.
        for (bool nameValue : {false, true})
            for (std::size_t i = 0; i < inputs.size(); ++i)
                if (inputs[i].isNameValuePair() == nameValue)
                    builder.row(Anchor::Kind::Input, {g, i}, inputs[i].getName(), "input", inputs[i].getHref());
    }
    auto const& outputs = page.getOutputs();
    if (!outputs.empty()) {
        builder.section(PageSection::Outputs, 0, "outputs");
        for (std::size_t i = 0; i < outputs.size(); ++i)
            builder.row(Anchor::Kind::Output, {i}, outputs[i].getName(), "output", outputs[i].getHref());
    }
    auto const& propertyGroups = page.getClassPropertyGroups();
    for (std::size_t g = 0; g < propertyGroups.size(); ++g) {
        auto const& properties = propertyGroups[g].getClassProperties();
        if (properties.empty()) continue;
        builder.section(PageSection::Properties, g);
        for (std::size_t i = 0; i < properties.size(); ++i)
            builder.row(Anchor::Kind::ClassProperty, {g, i}, properties[i].getName(), "property",
                        properties[i].getHref());
    }
    auto const& parameters = page.getParameters();
    if (!parameters.empty()) {
        builder.section(PageSection::Parameters, 0, "parameters");
        for (std::size_t i = 0; i < parameters.size(); ++i)
            builder.row(Anchor::Kind::Parameter, {i}, parameters[i].getName(), "parameter",
                        parameters[i].getHref());
    }
    auto const& examples = page.getExamples();
    if (!examples.empty()) {
        builder.section(PageSection::Examples, 0, "examples");
        for (std::size_t i = 0; i < examples.size(); ++i)
            builder.add(Anchor::Kind::Example, {i}, exampleTitle(page, i), fmt::format("example-{}", i + 1),
                        &examples[i].getUrl());
    }
    if (!page.getSeeAlsoInfo().empty()) builder.section(PageSection::SeeAlso, 0, "see-also");
    return std::move(builder.anchors);
}

}  // namespace refpage
