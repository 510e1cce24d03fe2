// The four vocabularies as the tests know them: every member's key and display
// text in number order, the default member and the host class name.
#pragma once

#include <reference/property/DeprecationStatus.hpp>
#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <reference/property/SyntaxType.hpp>

#include <cstdint>
#include <string_view>
#include <type_traits>

namespace testvalues {

/// One member: its number is its index in the vocabulary's table.
struct Member {
    std::string_view key;
    std::string_view display;
};

template <class Enum>
struct Vocabulary;

template <>
struct Vocabulary<reference::property::DeprecationStatus> {
    static constexpr char const* className = "DeprecationStatus";
    static constexpr std::uint32_t defaultValue = 0;
    static constexpr Member members[] = {{"current", "Current"}, {"announce", "Announce"}, {"warn", "Warn"},
                                         {"error", "Error"},     {"delete", "Delete"},     {"deny", "Deny"}};
};

template <>
struct Vocabulary<reference::property::FunctionType> {
    static constexpr char const* className = "FunctionType";
    static constexpr std::uint32_t defaultValue = 6;
    static constexpr Member members[] = {
        {"simple", "Simple"},           {"constructor", "Constructor"},   {"instancemethod", "Instance_Method"},
        {"applauncher", "App_Launcher"}, {"toollauncher", "Tool_Launcher"}, {"staticmethod", "Static_Method"},
        {"n/a", "NA"}};
};

template <>
struct Vocabulary<reference::property::RefEntityType> {
    static constexpr char const* className = "RefEntityType";
    static constexpr std::uint32_t defaultValue = 27;
    static constexpr Member members[] = {
        {"function", "Function"}, {"class", "Class"}, {"method", "Method"}, {"constructor", "Constructor"},
        {"property", "Property"}, {"properties", "Properties"}, {"object", "Object"}, {"sysobj", "Sys_Obj"},
        {"package", "Package"}, {"quillpadtask", "Quillpad_Task"}, {"settings", "Settings"}, {"keyword", "Keyword"},
        {"block", "Block"}, {"mdlcheck", "Model_Check"}, {"mdlguideline", "Model_Guideline"},
        {"reportgen", "Report_Gen"}, {"corvanelanguage", "Corvane_Language"}, {"corvaneblock", "Corvane_Block"},
        {"tessark", "Tessark"}, {"configparam", "Config_Param"}, {"runtimecheck", "Runtime_Check"},
        {"analysisopt", "Analysis_Opt"}, {"c", "C"}, {"cpp", "Cpp"}, {"app", "App"}, {"tool", "Tool"},
        {"scene", "Scene"}, {"", "Unknown"}};
};

template <>
struct Vocabulary<reference::property::SyntaxType> {
    static constexpr char const* className = "SyntaxType";
    static constexpr std::uint32_t defaultValue = 2;
    static constexpr Member members[] = {{"createobject", "CreateObject"}, {"usage", "Usage"}, {"n/a", "NA"}};
};

/// Calls `visit` with std::type_identity of each of the four enumeration classes.
template <class Visitor>
void forEachVocabulary(Visitor&& visit) {
    visit(std::type_identity<reference::property::DeprecationStatus>{});
    visit(std::type_identity<reference::property::FunctionType>{});
    visit(std::type_identity<reference::property::RefEntityType>{});
    visit(std::type_identity<reference::property::SyntaxType>{});
}

}  // namespace testvalues
