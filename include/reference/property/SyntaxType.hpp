// What kind of syntax a syntax group or argument belongs to.
#pragma once

#include <reference/property/EnumerationMembers.hpp>
#include <reference/property/Export.hpp>

#include <cstdint>
#include <string>
#include <string_view>

/// Every member: enumerator, number, key, display text; DEFAULT marks the default member.
#define REFERENCE_PROPERTY_SYNTAX_TYPE_MEMBERS(MEMBER, DEFAULT) \
    MEMBER (CreateObject, 0,  "createobject", "CreateObject") \
    MEMBER (Usage,        1,  "usage",        "Usage")        \
    DEFAULT(NA,           2,  "n/a",          "NA")

namespace reference::property {

class REFERENCE_PROPERTY_API SyntaxType {
public:
    /// Numbered from 0; any 32-bit number may be stored, members or not.
    enum Value : std::uint32_t {
        REFERENCE_PROPERTY_SYNTAX_TYPE_MEMBERS(REFERENCE_PROPERTY_ENUMERATOR, REFERENCE_PROPERTY_ENUMERATOR)
    };

    SyntaxType() = delete;

    /// The value of an exact, case-sensitive key; `getDefaultValue()` for any other text. Never allocates.
    static Value stringToEnum(std::string_view key) noexcept;
    /// The display text ("CreateObject", "Usage"); "NA" for `NA` and for a number that is no member.
    static std::string enumToString(Value value);
    /// `NA`.
    static Value getDefaultValue() noexcept;
    /// "ovrin.internal.reference.property", static.
    static char const* getOCOSNamespaceName() noexcept;
    /// "SyntaxType", static.
    static char const* getOCOSClassName() noexcept;
};

}  // namespace reference::property
