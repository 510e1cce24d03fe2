#include <algorithm>
#include <reference/glue/PropertyTable.hpp>

namespace reference::glue {

std::string_view describeKind(PropertyKind kind) noexcept {
    switch (kind) {
        case PropertyKind::String: return "a string";
        case PropertyKind::Bool: return "a bool";
        case PropertyKind::Enumeration: return "an enumeration key, an unsigned 32-bit number or an array of them";
        case PropertyKind::StringList: return "an array of strings";
        case PropertyKind::ObjectArray: return "an array of objects";
        case PropertyKind::Record: return "an object";
    }
    return "a value";
}

PropertyEntry const* PropertyTable::find(std::string_view word) const noexcept {
    auto const found =
        std::find_if(entries.begin(), entries.end(), [word](PropertyEntry const& entry) { return entry.word == word; });
    return found == entries.end() ? nullptr : &*found;
}

PropertyTable const* findTable(std::string_view qualifiedName) {
    for (PropertyTable const* table : allTables())
        if (table->qualifiedName == qualifiedName) return table;
    return nullptr;
}

}  // namespace reference::glue
