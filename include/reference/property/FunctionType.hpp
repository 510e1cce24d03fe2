// What kind of callable a function page documents.
#pragma once

#include <reference/property/EnumerationMembers.hpp>
#include <reference/property/Export.hpp>

#include <cstdint>
#include <string>
#include <string_view>

/// Every member: enumerator, number, key, display text; DEFAULT marks the default member.
#define REFERENCE_PROPERTY_FUNCTION_TYPE_MEMBERS(MEMBER, DEFAULT) \
    MEMBER (Simple,         0,  "simple",         "Simple")          \
    MEMBER (Constructor,    1,  "constructor",    "Constructor")     \
    MEMBER (InstanceMethod, 2,  "instancemethod", "Instance_Method") \
    MEMBER (AppLauncher,    3,  "applauncher",    "App_Launcher")    \
    MEMBER (ToolLauncher,   4,  "toollauncher",   "Tool_Launcher")   \
    MEMBER (StaticMethod,   5,  "staticmethod",   "Static_Method")   \
    DEFAULT(NA,             6,  "n/a",            "NA")

namespace reference::property {

class REFERENCE_PROPERTY_API FunctionType {
public:
    /// Numbered from 0; any 32-bit number may be stored, members or not.
    enum Value : std::uint32_t {
        REFERENCE_PROPERTY_FUNCTION_TYPE_MEMBERS(REFERENCE_PROPERTY_ENUMERATOR, REFERENCE_PROPERTY_ENUMERATOR)
    };

    FunctionType() = delete;

    /// The value of an exact, case-sensitive key; `getDefaultValue()` for any other text. Never allocates.
    static Value stringToEnum(std::string_view key) noexcept;
    /// The display text ("Simple", "Instance_Method", ...); "NA" for `NA` and for a number that is no member.
    static std::string enumToString(Value value);
    /// `NA`.
    static Value getDefaultValue() noexcept;
    /// "ovrin.internal.reference.property", static.
    static char const* getOCOSNamespaceName() noexcept;
    /// "FunctionType", static.
    static char const* getOCOSClassName() noexcept;
};

}  // namespace reference::property
