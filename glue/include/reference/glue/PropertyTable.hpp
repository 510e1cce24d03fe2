// One property table per host class: every property word of the class bound to
// its record's getter/setter pair, type-erased over the record.
#pragma once

#include <ovrin/array.hpp>
#include <ovrin/ocos.hpp>
#include <reference/glue/Enumerations.hpp>
#include <string>
#include <string_view>
#include <typeinfo>
#include <variant>
#include <vector>

namespace reference::property {
class AppThumbnail;
class ClassProperty;
class ClassPropertyGroup;
class Example;
class Input;
class InputGroup;
class Output;
class Parameter;
class RefEntity;
class RefItem;
class SeeAlso;
class SyntaxGroup;
}  // namespace reference::property

namespace reference::glue {

/// How a property crosses the boundary.
enum class PropertyKind {
    String,       ///< a UTF-16 text
    Bool,         ///< a flag
    Enumeration,  ///< a host enumeration object
    StringList,   ///< a 1-by-N host string array
    ObjectArray,  ///< a 1-by-N host object array of one record class
    Record,       ///< one host object; the setter takes element 0 of the array it is given
};

/// The word used for a kind in messages ("a string", "a list of records", ...).
std::string_view describeKind(PropertyKind kind) noexcept;

/// Accessors over a record given as `void*` of the table's native type.
struct StringAccess {
    std::u16string const& (*get)(void const* record);  ///< the stored member, borrowed from the record
    void (*set)(void* record, std::u16string const* value);
};
struct BoolAccess {
    bool (*get)(void const* record);
    void (*set)(void* record, bool value);
};
struct ArrayAccess {
    oxArray_tag const* (*get)(void const* record);  ///< the record's cached array, borrowed until set again
    void (*set)(void* record, oxArray_tag const* value);
};

struct PropertyTable;

struct PropertyEntry {
    std::string_view word;  ///< the property's host word, as "SyntaxGroups"
    PropertyKind kind;
    std::variant<StringAccess, BoolAccess, ArrayAccess> access;  ///< StringAccess, BoolAccess or ArrayAccess by kind
    EnumerationInfo const* enumeration = nullptr;                ///< set for Enumeration only
    PropertyTable const& (*elementTable)() = nullptr;            ///< set for ObjectArray and Record only

    StringAccess const& strings() const { return std::get<StringAccess>(access); }
    BoolAccess const& flag() const { return std::get<BoolAccess>(access); }
    ArrayAccess const& arrays() const { return std::get<ArrayAccess>(access); }
};

struct PropertyTable {
    std::string qualifiedName;                         ///< host class: namespace, ".", class name
    ocos::ClassIdentity identity = nullptr;            ///< interned qualifiedName
    std::type_info const* nativeType = nullptr;        ///< type of the record a host object of the class wraps
    void (*dispose)(void* record) noexcept = nullptr;  ///< deletes a heap record of nativeType
    void* (*makeDefault)() = nullptr;                  ///< a new default heap record of nativeType; the caller owns it
    std::vector<PropertyEntry> entries;                ///< in page order

    /// The entry of `word` (exact, case-sensitive), or null.
    PropertyEntry const* find(std::string_view word) const noexcept;
};

/// The table of a record class; static storage, built on first use.
template <class Record>
PropertyTable const& tableOf();

template <>
PropertyTable const& tableOf<property::AppThumbnail>();
template <>
PropertyTable const& tableOf<property::ClassProperty>();
template <>
PropertyTable const& tableOf<property::ClassPropertyGroup>();
template <>
PropertyTable const& tableOf<property::Example>();
template <>
PropertyTable const& tableOf<property::Input>();
template <>
PropertyTable const& tableOf<property::InputGroup>();
template <>
PropertyTable const& tableOf<property::Output>();
template <>
PropertyTable const& tableOf<property::Parameter>();
template <>
PropertyTable const& tableOf<property::RefEntity>();
template <>
PropertyTable const& tableOf<property::RefItem>();
template <>
PropertyTable const& tableOf<property::SeeAlso>();
template <>
PropertyTable const& tableOf<property::SyntaxGroup>();

/// Every table, one per host record class: the list the host classes are registered from.
std::vector<PropertyTable const*> const& allTables();

/// The table of the host class named `qualifiedName`, or null.
PropertyTable const* findTable(std::string_view qualifiedName);

}  // namespace reference::glue
