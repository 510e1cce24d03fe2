// What kind of thing a reference entity is.
#pragma once

#include <reference/property/Export.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace reference::property {

class REFERENCE_PROPERTY_API RefEntityType {
public:
    /// Numbered from 0; any 32-bit number may be stored, members or not.
    enum Value : std::uint32_t {
        Function = 0,          ///< key "function"
        Class = 1,             ///< key "class"
        Method = 2,            ///< key "method"
        Constructor = 3,       ///< key "constructor"
        Property = 4,          ///< key "property"
        Properties = 5,        ///< key "properties"
        Object = 6,            ///< key "object"
        SysObj = 7,            ///< key "sysobj"
        Package = 8,           ///< key "package"
        QuillpadTask = 9,      ///< key "quillpadtask"
        Settings = 10,         ///< key "settings"
        Keyword = 11,          ///< key "keyword"
        Block = 12,            ///< key "block"
        ModelCheck = 13,       ///< key "mdlcheck"
        ModelGuideline = 14,   ///< key "mdlguideline"
        ReportGen = 15,        ///< key "reportgen"
        CorvaneLanguage = 16,  ///< key "corvanelanguage"
        CorvaneBlock = 17,     ///< key "corvaneblock"
        Tessark = 18,          ///< key "tessark"
        ConfigParam = 19,      ///< key "configparam"
        RuntimeCheck = 20,     ///< key "runtimecheck"
        AnalysisOpt = 21,      ///< key "analysisopt"
        C = 22,                ///< key "c"
        Cpp = 23,              ///< key "cpp"
        App = 24,              ///< key "app"
        Tool = 25,             ///< key "tool"
        Scene = 26,            ///< key "scene"
        Unknown = 27,          ///< the empty key; the default
    };

    RefEntityType() = delete;

    /// The value of an exact, case-sensitive key (the empty text is the key of `Unknown`);
    /// `getDefaultValue()` for any other text. Never allocates.
    static Value stringToEnum(std::string_view key) noexcept;
    /// The display text ("Function", "Sys_Obj", ...); "Unknown" for `Unknown` and for a number that is no member.
    static std::string enumToString(Value value);
    /// `Unknown`.
    static Value getDefaultValue() noexcept;
    /// "ovrin.internal.reference.property", static.
    static char const* getOCOSNamespaceName() noexcept;
    /// "RefEntityType", static.
    static char const* getOCOSClassName() noexcept;
};

}  // namespace reference::property
