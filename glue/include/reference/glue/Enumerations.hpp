// What the glue knows of each enumeration class: its host class, its members
// and its two conversions, reachable without naming the class. Every member
// view is an expansion of the member list in the class's own header.
#pragma once

#include <cstdint>
#include <optional>
#include <ovrin/ocos.hpp>
#include <reference/property/HostArray.hpp>
#include <span>
#include <string>
#include <string_view>

namespace reference::glue {

/// One member of an enumeration class; the texts are static.
struct EnumerationMember {
    std::uint32_t value;           ///< the member's number; members are numbered 0, 1, 2, ... in order
    std::string_view key;          ///< its key ("usage"; RefEntityType's Unknown has the empty key)
    std::string_view displayText;  ///< its display text ("Usage"), never a key
};

struct EnumerationInfo {
    std::string qualifiedName;                                    ///< host class: namespace, ".", class name
    std::string_view className;                                   ///< class name alone, as "SyntaxType"
    ocos::ClassIdentity identity = nullptr;                       ///< interned qualifiedName
    std::span<EnumerationMember const> members;                   ///< every member in number order; static storage
    std::uint32_t memberCount = 0;                                ///< members.size(): numbers 0 to memberCount - 1
    std::string_view defaultKey;                                  ///< key of the default member, the only key giving it
    std::uint32_t (*keyToValue)(std::string_view key) = nullptr;  ///< the class's stringToEnum
    std::string (*displayText)(std::uint32_t value) = nullptr;    ///< the class's enumToString

    /// True when `value` is the number of a member.
    bool hasMember(std::uint32_t value) const noexcept { return value < memberCount; }
    /// True when `key` is the key of a member; any other text maps to the default.
    bool namesMember(std::string_view key) const noexcept;
    /// The key of member `value`; nullopt when `value` is the number of no member.
    std::optional<std::string_view> keyOf(std::uint32_t value) const noexcept;
};

/// The four enumeration classes; static storage, built on first use.
template <class Enumeration>
EnumerationInfo const& enumerationInfo();

/// DeprecationStatus, FunctionType, RefEntityType, SyntaxType, in that order; static storage.
std::span<EnumerationInfo const* const> allEnumerations();

/// A new host enumeration object of `info`'s class made from `values` (any count:
/// the object's underlying array holds them all). The caller owns the one reference.
property::HostArrayPtr constructEnumeration(EnumerationInfo const& info, std::span<std::uint32_t const> values);

/// The numbers under a host enumeration object, borrowed from it.
std::span<std::uint32_t const> enumerationValues(oxArray_tag const* object);

}  // namespace reference::glue
