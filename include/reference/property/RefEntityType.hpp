// What kind of thing a reference entity is.
#pragma once

#include <reference/property/EnumerationMembers.hpp>
#include <reference/property/Export.hpp>

#include <cstdint>
#include <string>
#include <string_view>

/// Every member: enumerator, number, key, display text; DEFAULT marks the default member.
#define REFERENCE_PROPERTY_REF_ENTITY_TYPE_MEMBERS(MEMBER, DEFAULT) \
    MEMBER (Function,        0,  "function",        "Function")         \
    MEMBER (Class,           1,  "class",           "Class")            \
    MEMBER (Method,          2,  "method",          "Method")           \
    MEMBER (Constructor,     3,  "constructor",     "Constructor")      \
    MEMBER (Property,        4,  "property",        "Property")         \
    MEMBER (Properties,      5,  "properties",      "Properties")       \
    MEMBER (Object,          6,  "object",          "Object")           \
    MEMBER (SysObj,          7,  "sysobj",          "Sys_Obj")          \
    MEMBER (Package,         8,  "package",         "Package")          \
    MEMBER (QuillpadTask,    9,  "quillpadtask",    "Quillpad_Task")    \
    MEMBER (Settings,        10, "settings",        "Settings")         \
    MEMBER (Keyword,         11, "keyword",         "Keyword")          \
    MEMBER (Block,           12, "block",           "Block")            \
    MEMBER (ModelCheck,      13, "mdlcheck",        "Model_Check")      \
    MEMBER (ModelGuideline,  14, "mdlguideline",    "Model_Guideline")  \
    MEMBER (ReportGen,       15, "reportgen",       "Report_Gen")       \
    MEMBER (CorvaneLanguage, 16, "corvanelanguage", "Corvane_Language") \
    MEMBER (CorvaneBlock,    17, "corvaneblock",    "Corvane_Block")    \
    MEMBER (Tessark,         18, "tessark",         "Tessark")          \
    MEMBER (ConfigParam,     19, "configparam",     "Config_Param")     \
    MEMBER (RuntimeCheck,    20, "runtimecheck",    "Runtime_Check")    \
    MEMBER (AnalysisOpt,     21, "analysisopt",     "Analysis_Opt")     \
    MEMBER (C,               22, "c",               "C")                \
    MEMBER (Cpp,             23, "cpp",             "Cpp")              \
    MEMBER (App,             24, "app",             "App")              \
    MEMBER (Tool,            25, "tool",            "Tool")             \
    MEMBER (Scene,           26, "scene",           "Scene")            \
    DEFAULT(Unknown,         27, "",                "Unknown")

namespace reference::property {

class REFERENCE_PROPERTY_API RefEntityType {
public:
    /// Numbered from 0; any 32-bit number may be stored, members or not.
    enum Value : std::uint32_t {
        REFERENCE_PROPERTY_REF_ENTITY_TYPE_MEMBERS(REFERENCE_PROPERTY_ENUMERATOR, REFERENCE_PROPERTY_ENUMERATOR)
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
