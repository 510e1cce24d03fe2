// The key texts of each enumeration class with their numbers, as the benchmarks
// feed them to the library and to the baseline tables.
#pragma once

#include <reference/property/DeprecationStatus.hpp>
#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <reference/property/SyntaxType.hpp>

#include <array>
#include <cstdint>
#include <string_view>
#include <utility>

namespace bench {

using KeyEntry = std::pair<std::string_view, std::uint32_t>;

template <class Enumeration>
struct EnumKeys;

template <>
struct EnumKeys<reference::property::DeprecationStatus> {
    static constexpr std::string_view name = "DeprecationStatus";
    static constexpr std::uint32_t fallback = 0;
    static constexpr std::array<KeyEntry, 6> keys{{
        {"current", 0}, {"announce", 1}, {"warn", 2}, {"error", 3}, {"delete", 4}, {"deny", 5},
    }};
};

template <>
struct EnumKeys<reference::property::FunctionType> {
    static constexpr std::string_view name = "FunctionType";
    static constexpr std::uint32_t fallback = 6;
    static constexpr std::array<KeyEntry, 7> keys{{
        {"simple", 0},
        {"constructor", 1},
        {"instancemethod", 2},
        {"applauncher", 3},
        {"toollauncher", 4},
        {"staticmethod", 5},
        {"n/a", 6},
    }};
};

template <>
struct EnumKeys<reference::property::RefEntityType> {
    static constexpr std::string_view name = "RefEntityType";
    static constexpr std::uint32_t fallback = 27;
    static constexpr std::array<KeyEntry, 28> keys{{
        {"function", 0},      {"class", 1},         {"method", 2},           {"constructor", 3},
        {"property", 4},      {"properties", 5},    {"object", 6},           {"sysobj", 7},
        {"package", 8},       {"quillpadtask", 9},  {"settings", 10},        {"keyword", 11},
        {"block", 12},        {"mdlcheck", 13},     {"mdlguideline", 14},    {"reportgen", 15},
        {"corvanelanguage", 16}, {"corvaneblock", 17}, {"tessark", 18},      {"configparam", 19},
        {"runtimecheck", 20}, {"analysisopt", 21},  {"c", 22},               {"cpp", 23},
        {"app", 24},          {"tool", 25},         {"scene", 26},           {"", 27},
    }};
};

template <>
struct EnumKeys<reference::property::SyntaxType> {
    static constexpr std::string_view name = "SyntaxType";
    static constexpr std::uint32_t fallback = 2;
    static constexpr std::array<KeyEntry, 3> keys{{{"createobject", 0}, {"usage", 1}, {"n/a", 2}}};
};

}  // namespace bench
