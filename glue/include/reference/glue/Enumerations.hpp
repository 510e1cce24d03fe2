// What the glue knows of each enumeration class: its host class, its members
// and its two conversions, reachable without naming the class.
#pragma once

#include <cstdint>
#include <ovrin/ocos.hpp>
#include <reference/property/HostArray.hpp>
#include <span>
#include <string>
#include <string_view>

namespace reference::glue {

struct EnumerationInfo {
    std::string qualifiedName;               ///< host class: namespace, ".", class name
    std::string_view className;              ///< class name alone, as "SyntaxType"
    ocos::ClassIdentity identity = nullptr;  ///< interned qualifiedName
    std::uint32_t memberCount = 0;           ///< members are numbered 0 to memberCount - 1
    std::string_view defaultKey;             ///< key text of the default member (the only key mapping to it)
    std::uint32_t (*keyToValue)(std::string_view key) = nullptr;  ///< the class's stringToEnum
    std::string (*displayText)(std::uint32_t value) = nullptr;    ///< the class's enumToString

    /// True when `value` is the number of a member.
    bool hasMember(std::uint32_t value) const noexcept { return value < memberCount; }
    /// True when `key` is the key of a member; any other text maps to the default.
    bool namesMember(std::string_view key) const;
};

/// The four enumeration classes; static storage, built on first use.
template <class Enumeration>
EnumerationInfo const& enumerationInfo();

/// A new host enumeration object of `info`'s class made from `values` (any count:
/// the object's underlying array holds them all). The caller owns the one reference.
property::HostArrayPtr constructEnumeration(EnumerationInfo const& info, std::span<std::uint32_t const> values);

/// The numbers under a host enumeration object, borrowed from it.
std::span<std::uint32_t const> enumerationValues(oxArray_tag const* object);

}  // namespace reference::glue
