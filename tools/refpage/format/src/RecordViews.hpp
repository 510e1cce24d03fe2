// Two views of a record's values, read entry by entry in its property table's order:
// as the host holds it (through the host getters) and as a page gave it (the keys it
// left out at the record's initial values). The writer and the check read either alike.
#pragma once

#include <boost/container_hash/hash.hpp>

#include <cstddef>
#include <cstdint>
#include <ovrin/array.hpp>
#include <ovrin/ocos.hpp>
#include <reference/glue/Properties.hpp>
#include <refpage/format/Document.hpp>
#include <span>
#include <string_view>

namespace refpage {

using reference::glue::PropertyEntry;
using reference::glue::PropertyKind;
using reference::glue::PropertyTable;

/// A record as the host holds it: every value read through the host getters of its table.
class HostRecord {
public:
    HostRecord(void const* record, PropertyTable const& table) : record_(record), table_(&table) {}

    PropertyTable const& table() const { return *table_; }
    std::u16string_view text(PropertyEntry const& entry) const { return entry.strings().get(record_); }
    bool flag(PropertyEntry const& entry) const { return entry.flag().get(record_); }
    std::span<std::uint32_t const> numbers(PropertyEntry const& entry) const {
        return reference::glue::enumerationValues(entry.arrays().get(record_));
    }
    std::size_t count(PropertyEntry const& entry) const { return oxGetNumberOfElements(entry.arrays().get(record_)); }
    std::u16string_view text(PropertyEntry const& entry, std::size_t index) const {
        return oxGetStringElement(entry.arrays().get(record_), index);
    }
    /// Calls `visit` with the view of record `index` of a record-valued entry.
    template <class Visit>
    void child(PropertyEntry const& entry, std::size_t index, Visit visit) const {
        ocos::COSInterfacePtr const object = omGetArrayElement(entry.arrays().get(record_), index);
        PropertyTable const& table = entry.elementTable();
        visit(HostRecord(reference::glue::recordOf(*object.get(), table), table));
    }

private:
    void const* record_;          ///< borrowed from the host object that owns it
    PropertyTable const* table_;  ///< never null
};

/// The view of the record that a 1-by-1 host object array holds; borrowed from `object`.
inline HostRecord hostRecord(oxArray_tag const* object) {
    ocos::COSInterfacePtr const element = reference::glue::objectOf(object);
    PropertyTable const& table = reference::glue::tableOf(*element.get());
    return HostRecord(reference::glue::recordOf(*element.get(), table), table);
}

/// The assignment of `entry` in `node`, or null when the page left the key out.
inline Assignment const* assignmentOf(PageNode const& node, PropertyEntry const& entry) {
    for (Assignment const& assignment : node.assignments)
        if (assignment.entry == &entry) return &assignment;
    return nullptr;
}

/// A record as a page gave it: the keys it left out hold the record's initial values.
class NodeRecord {
public:
    explicit NodeRecord(PageNode const& node) : node_(&node) {}

    PropertyTable const& table() const { return *node_->table; }
    std::u16string_view text(PropertyEntry const& entry) const {
        NodeValue const* const value = given(entry);
        return value != nullptr ? std::u16string_view(std::get<std::u16string>(*value)) : std::u16string_view();
    }
    bool flag(PropertyEntry const& entry) const {
        NodeValue const* const value = given(entry);
        return value != nullptr && std::get<bool>(*value);
    }
    std::span<std::uint32_t const> numbers(PropertyEntry const& entry) const {
        if (NodeValue const* const value = given(entry)) return std::get<EnumerationValues>(*value);
        initial_ = entry.enumeration->keyToValue(entry.enumeration->defaultKey);
        return std::span(&initial_, 1);
    }
    std::size_t count(PropertyEntry const& entry) const {
        NodeValue const* const value = given(entry);
        if (value == nullptr) return 0;
        return entry.kind == PropertyKind::StringList ? std::get<StringList>(*value).size()
                                                      : std::get<NodeList>(*value).size();
    }
    std::u16string_view text(PropertyEntry const& entry, std::size_t index) const {
        return std::get<StringList>(*given(entry))[index];
    }
    template <class Visit>
    void child(PropertyEntry const& entry, std::size_t index, Visit visit) const {
        NodeValue const* const value = given(entry);
        if (value != nullptr) {
            visit(NodeRecord(std::get<NodeList>(*value)[index]));
            return;
        }
        PageNode const initial{&entry.elementTable(), {}, node_->offset};  // a single record left out
        visit(NodeRecord(initial));
    }

private:
    NodeValue const* given(PropertyEntry const& entry) const {
        Assignment const* const assignment = assignmentOf(*node_, entry);
        return assignment != nullptr ? &assignment->value : nullptr;
    }

    PageNode const* node_;                 ///< never null
    mutable std::uint32_t initial_ = 0;    ///< the initial member of the last enumeration left out
};

/// A digest of every value of `record` and of the records it holds, in table order: two
/// views give the same digest when they hold the same values (barring a 64-bit collision).
template <class Record>
void digestValues(Record const& record, std::size_t& digest) {
    for (PropertyEntry const& entry : record.table().entries) {
        switch (entry.kind) {
            case PropertyKind::String: boost::hash_combine(digest, record.text(entry)); break;
            case PropertyKind::Bool: boost::hash_combine(digest, record.flag(entry)); break;
            case PropertyKind::Enumeration: {
                std::span<std::uint32_t const> const numbers = record.numbers(entry);
                boost::hash_combine(digest, numbers.size());
                boost::hash_range(digest, numbers.begin(), numbers.end());
                break;
            }
            case PropertyKind::StringList: {
                std::size_t const count = record.count(entry);
                boost::hash_combine(digest, count);
                for (std::size_t i = 0; i < count; ++i) boost::hash_combine(digest, record.text(entry, i));
                break;
            }
            case PropertyKind::ObjectArray:
            case PropertyKind::Record: {
                std::size_t const count = entry.kind == PropertyKind::Record ? 1 : record.count(entry);
                boost::hash_combine(digest, count);
                for (std::size_t i = 0; i < count; ++i)
                    record.child(entry, i, [&digest](auto const& child) { digestValues(child, digest); });
                break;
            }
        }
    }
}

}  // namespace refpage
