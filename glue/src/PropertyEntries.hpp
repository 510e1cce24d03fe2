// Builders of property-table entries: each turns one getter/setter pair of a
// record into a type-erased entry. Written once, instantiated per property.
#pragma once

#include <functional>
#include <reference/glue/PropertyTable.hpp>
#include <string_view>

namespace reference::glue::entries {

/// The record a host object wraps, as the type its table was made for. Accessors call
/// through std::invoke, so a member of the base (ObjectInfo) binds by an ordinary
/// derived-to-base conversion, which optimised builds' alias analysis accepts.
template <class Record>
Record const& as(void const* record) {
    return *static_cast<Record const*>(record);
}
template <class Record>
Record& as(void* record) {
    return *static_cast<Record*>(record);
}

/// A string property: `Get` returns the member, `Set` takes a pointer to the new text.
template <class Record, auto Get, auto Set>
PropertyEntry stringProperty(std::string_view word) {
    StringAccess access{
        [](void const* record) -> std::u16string const& { return std::invoke(Get, as<Record>(record)); },
        [](void* record, std::u16string const* value) { std::invoke(Set, as<Record>(record), value); },
    };
    return PropertyEntry{word, PropertyKind::String, access};
}

template <class Record, auto Get, auto Set>
PropertyEntry boolProperty(std::string_view word) {
    BoolAccess access{
        [](void const* record) -> bool { return std::invoke(Get, as<Record>(record)); },
        [](void* record, bool value) { std::invoke(Set, as<Record>(record), value); },
    };
    return PropertyEntry{word, PropertyKind::Bool, access};
}

template <class Record, auto Get, auto Set>
ArrayAccess arrayAccess() {
    return ArrayAccess{
        [](void const* record) -> oxArray_tag const* { return std::invoke(Get, as<Record>(record)); },
        [](void* record, oxArray_tag const* value) { std::invoke(Set, as<Record>(record), value); },
    };
}

/// An enumeration property of class `Enumeration`.
template <class Record, class Enumeration, auto Get, auto Set>
PropertyEntry enumProperty(std::string_view word) {
    PropertyEntry entry{word, PropertyKind::Enumeration, arrayAccess<Record, Get, Set>()};
    entry.enumeration = &enumerationInfo<Enumeration>();
    return entry;
}

template <class Record, auto Get, auto Set>
PropertyEntry stringListProperty(std::string_view word) {
    return PropertyEntry{word, PropertyKind::StringList, arrayAccess<Record, Get, Set>()};
}

/// A list of `Element` records, as a 1-by-N host object array.
template <class Record, class Element, auto Get, auto Set>
PropertyEntry objectArrayProperty(std::string_view word) {
    PropertyEntry entry{word, PropertyKind::ObjectArray, arrayAccess<Record, Get, Set>()};
    entry.elementTable = &tableOf<Element>;
    return entry;
}

/// One `Element` record, as one host object.
template <class Record, class Element, auto Get, auto Set>
PropertyEntry recordProperty(std::string_view word) {
    PropertyEntry entry{word, PropertyKind::Record, arrayAccess<Record, Get, Set>()};
    entry.elementTable = &tableOf<Element>;
    return entry;
}

}  // namespace reference::glue::entries
