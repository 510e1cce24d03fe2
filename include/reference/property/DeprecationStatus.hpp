// How far a documented item is on its way out.
#pragma once

#include <reference/property/Export.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace reference::property {

class REFERENCE_PROPERTY_API DeprecationStatus {
public:
    /// Numbered from 0; any 32-bit number may be stored, members or not.
    enum Value : std::uint32_t {
        Current = 0,   ///< key "current"
        Announce = 1,  ///< key "announce"
        Warn = 2,      ///< key "warn"
        Error = 3,     ///< key "error"
        Delete = 4,    ///< key "delete"
        Deny = 5,      ///< key "deny"
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
