// How far a documented item is on its way out.
#pragma once

#include <reference/property/EnumerationMembers.hpp>
#include <reference/property/Export.hpp>

#include <cstdint>
#include <string>
#include <string_view>

/// Every member: enumerator, number, key, display text; DEFAULT marks the default member.
#define REFERENCE_PROPERTY_DEPRECATION_STATUS_MEMBERS(MEMBER, DEFAULT) \
    DEFAULT(Current,  0,  "current",  "Current")  \
    MEMBER (Announce, 1,  "announce", "Announce") \
    MEMBER (Warn,     2,  "warn",     "Warn")     \
    MEMBER (Error,    3,  "error",    "Error")    \
    MEMBER (Delete,   4,  "delete",   "Delete")   \
    MEMBER (Deny,     5,  "deny",     "Deny")

namespace reference::property {

class REFERENCE_PROPERTY_API DeprecationStatus {
public:
    /// Numbered from 0; any 32-bit number may be stored, members or not.
    enum Value : std::uint32_t {
        REFERENCE_PROPERTY_DEPRECATION_STATUS_MEMBERS(REFERENCE_PROPERTY_ENUMERATOR, REFERENCE_PROPERTY_ENUMERATOR)
    };

    DeprecationStatus() = delete;

    /// The value of an exact, case-sensitive key; `getDefaultValue()` for any other text. Never allocates.
    static Value stringToEnum(std::string_view key) noexcept;
    /// The display text ("Current", "Announce", ...); "Current" for a number that is no member.
    static std::string enumToString(Value value);
    /// `Current`.
    static Value getDefaultValue() noexcept;
    /// "ovrin.internal.reference.property", static.
    static char const* getOCOSNamespaceName() noexcept;
    /// "DeprecationStatus", static.
    static char const* getOCOSClassName() noexcept;
};

}  // namespace reference::property
