// What kind of syntax a syntax group or argument belongs to.
#pragma once

#include <reference/property/Export.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace reference::property {

class REFERENCE_PROPERTY_API SyntaxType {
public:
    /// Numbered from 0; any 32-bit number may be stored, members or not.
    enum Value : std::uint32_t {
        CreateObject = 0,  ///< key "createobject"
        Usage = 1,         ///< key "usage"
        NA = 2,            ///< key "n/a"; the default
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
