// The definition of a vocabulary class from its member list (<Class>.def): every
// operation and the key table are expansions of that one list.
#pragma once

#include "bridge/ClassIdentity.hpp"
#include "enums/KeyTable.hpp"

#include <string>
#include <string_view>
#include <utility>

/// A member as its (key, value) pair of the key table.
#define REFERENCE_ENUMS_KEY_PAIR(Name, number, key, text) std::pair<std::string_view, Value>{key, Value::Name},
/// A member as its case of the display-text switch.
#define REFERENCE_ENUMS_DISPLAY_CASE(Name, number, key, text) \
    case Value::Name: return text;
/// The default member's value, and its display text (the switch's fallback).
#define REFERENCE_ENUMS_DEFAULT_VALUE(Name, number, key, text) Value::Name
#define REFERENCE_ENUMS_DEFAULT_TEXT(Name, number, key, text) text

/// Defines the five operations of vocabulary `Class` from `MEMBERS` (its member list), in
/// `reference::property`. The key table is a namespace-scope object of the expanding source
/// file, built at load by the flat map's unique range insertion from the pairs in member
/// order. `DEFAULT_CASE` is REFERENCE_ENUMS_DISPLAY_CASE when the switch lists the default
/// member too, REFERENCE_PROPERTY_SKIP_MEMBER when the fallback alone answers it.
#define REFERENCE_ENUMS_DEFINE_VOCABULARY(Class, MEMBERS, DEFAULT_CASE)                                    \
    namespace reference::property {                                                                        \
    namespace {                                                                                            \
    using Value = Class::Value;                                                                            \
    constexpr std::pair<std::string_view, Value> keyPairs[] = {                                            \
        MEMBERS(REFERENCE_ENUMS_KEY_PAIR, REFERENCE_ENUMS_KEY_PAIR)};                                      \
    enums::KeyTable<Value> const keyTable = enums::buildKeyTable(keyPairs);                                \
    /* stringToEnum reads the default here, not through the exported getDefaultValue(). */                 \
    constexpr Value defaultValue = MEMBERS(REFERENCE_PROPERTY_SKIP_MEMBER, REFERENCE_ENUMS_DEFAULT_VALUE); \
    }                                                                                                      \
    Class::Value Class::stringToEnum(std::string_view key) noexcept {                                      \
        return enums::findKey(keyTable, key, defaultValue);                                                \
    }                                                                                                      \
    std::string Class::enumToString(Value value) {                                                         \
        switch (value) {                                                                                   \
            MEMBERS(REFERENCE_ENUMS_DISPLAY_CASE, DEFAULT_CASE)                                            \
            default: break; /* every number that is no member */                                           \
        }                                                                                                  \
        return MEMBERS(REFERENCE_PROPERTY_SKIP_MEMBER, REFERENCE_ENUMS_DEFAULT_TEXT);                      \
    }                                                                                                      \
    Class::Value Class::getDefaultValue() noexcept { return defaultValue; }                                \
    char const* Class::getOCOSNamespaceName() noexcept { return bridge::hostNamespace; }                   \
    char const* Class::getOCOSClassName() noexcept { return #Class; }                                      \
    }  // namespace reference::property
