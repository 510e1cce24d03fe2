#include <algorithm>
#include <refpage/interchange/SchemaDescriptions.hpp>

namespace refpage {

namespace {

constexpr KeyDescription keys[] = {
    // The page.
    {"RefItem", "Href",
     "Where the page lives, relative to the doc set's root (\"reference/generated/numpy.sort.html\"); other pages "
     "link to it by this path."},
    {"RefItem", "RefEntities",
     "What the page documents, one entry per entity (a class and its constructor are two); the first names the page."},
    {"RefItem", "PackageName", "The package the page belongs to (\"numpy\"); the site's index groups pages by it."},
    {"RefItem", "Purpose", "One sentence saying what the entity is for."},
    {"RefItem", "IntroducedIn", "The version that introduced the entity (\"1.13\")."},
    {"RefItem", "Description", "The full description, in CommonMark."},
    {"RefItem", "AppThumbnail", "The image shown for an app."},
    {"RefItem", "DeprecationStatus", "How far the entity is along the way to removal."},
    {"RefItem", "SyntaxGroups", "The ways to call or use the entity, in groups."},
    {"RefItem", "InputGroups", "The input arguments, in groups."},
    {"RefItem", "Outputs", "What the entity returns."},
    {"RefItem", "ClassPropertyGroups", "The properties of a class, in groups."},
    {"RefItem", "SeeAlso", "Related pages, each a name with a link."},
    {"RefItem", "Examples", "Examples, each a title with a link."},
    {"RefItem", "Parameters", "The named parameters the entity takes (of a block, a setting, ...)."},
    // The records inside it.
    {"RefEntity", "Name", "The entity's full name, as code refers to it (\"numpy.sort\")."},
    {"RefEntity", "RefEntityType", "What kind of entity it is; decides its role in a Sphinx inventory."},
    {"RefEntity", "FunctionType", "How a function or method is called."},
    {"AppThumbnail", "FileRef", "The image file."},
    {"AppThumbnail", "Alt", "The image's text alternative."},
    {"SyntaxGroup", "SyntaxType", "Whether the group's syntaxes create an object or use one."},
    {"SyntaxGroup", "Syntaxes", "Each way of calling, as code (\"sort(a, axis=-1)\")."},
    {"InputGroup", "Inputs", "The group's input arguments."},
    {"ClassPropertyGroup", "Properties", "The group's properties."},
    {"SeeAlso", "Name", "The text shown for the link."},
    {"SeeAlso", "Url", "Where the link leads: a page of the set (relative to its root), \"#fragment\" on this page, "
                       "or an absolute URL."},
    {"Example", "Url", "Where the example is: a page of the set (relative to its root), \"#fragment\" on this page, "
                       "or an absolute URL."},
    {"Example", "OpenCommand", "A command that opens the example."},
    {"Input", "SyntaxType", "Whether the argument belongs to syntaxes that create an object or use one."},
    {"Input", "IsNameValuePair", "True when the argument is given as a name followed by its value."},
    {"Output", "SyntaxType", "Whether the output belongs to syntaxes that create an object or use one."},
    // Keys several records share.
    {"", "Title", "The heading shown above it."},
    {"", "Name", "Its name, as code writes it."},
    {"", "Purpose", "What it is for, in a sentence."},
    {"", "Values", "The types or values it takes, one text each (\"int\", \"array_like\")."},
    {"", "Href", "A link to where it is described: a page of the set (relative to its root), \"#fragment\" on this "
                 "page, or an absolute URL."},
    {"", "DefaultValue", "Its value when none is given, as code."},
};

struct Named {
    std::string_view name;
    std::string_view text;
};

constexpr Named records[] = {
    {"RefItem", "A reference page: one JSON object per file, documenting one or more entities."},
    {"RefEntity", "An entity the page documents."},
    {"AppThumbnail", "An image for an app page."},
    {"SyntaxGroup", "A group of syntaxes under one heading."},
    {"InputGroup", "A group of input arguments under one heading."},
    {"Input", "An input argument."},
    {"Output", "An output: something the entity returns."},
    {"Parameter", "A named parameter."},
    {"ClassPropertyGroup", "A group of class properties under one heading."},
    {"ClassProperty", "A property of a class."},
    {"SeeAlso", "A related page."},
    {"Example", "An example."},
};

constexpr Named enumerations[] = {
    {"DeprecationStatus", "How far an entity is along the way to removal."},
    {"FunctionType", "How a function or method is called."},
    {"RefEntityType", "What kind of entity it is."},
    {"SyntaxType", "Whether syntaxes create an object or use one."},
};

std::string_view find(std::span<Named const> list, std::string_view name) {
    auto const found = std::find_if(list.begin(), list.end(), [name](Named const& n) { return n.name == name; });
    return found == list.end() ? std::string_view() : found->text;
}

}  // namespace

std::span<KeyDescription const> keyDescriptions() noexcept {
    return keys;
}

std::string_view keyDescription(std::string_view record, std::string_view word) noexcept {
    for (std::string_view const owner : {record, std::string_view()})
        for (auto const& key : keys)
            if (key.record == owner && key.word == word) return key.text;
    return {};
}

std::string_view recordDescription(std::string_view record) noexcept {
    return find(records, record);
}

std::string_view enumerationDescription(std::string_view className) noexcept {
    return find(enumerations, className);
}

}  // namespace refpage
