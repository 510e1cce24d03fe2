// What kind of callable a function page documents.
#pragma once

#include <reference/property/Export.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace reference::property {

class REFERENCE_PROPERTY_API FunctionType {
public:
    /// Numbered from 0; any 32-bit number may be stored, members or not.
    enum Value : std::uint32_t {
        Simple = 0,          ///< key "simple"
        Constructor = 1,     ///< key "constructor"
        InstanceMethod = 2,  ///< key "instancemethod"
        AppLauncher = 3,     ///< key "applauncher"
        ToolLauncher = 4,    ///< key "toollauncher"
        StaticMethod = 5,    ///< key "staticmethod"
        NA = 6,              ///< key "n/a"; the default
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
