// How a vocabulary class is written down. A data file beside its header,
// <Class>.def, lists every member once,
//
//     #define REFERENCE_PROPERTY_<CLASS>_MEMBERS(MEMBER, DEFAULT)
//         MEMBER(Name, number, "key", "Display_Text") ...
//
// with DEFAULT in place of MEMBER for the one default member; the header declares
// the class from that list with REFERENCE_PROPERTY_DECLARE_VOCABULARY. The
// enumerators, the key table, the display texts and the glue's member view are
// all expansions of the list. Macros only: nothing here is compiled into a symbol.
//
// Every vocabulary class `Class`, in reference::property, has only static members:
//
// - `enum Value : std::uint32_t`: one enumerator per member, numbered 0, 1, 2, ... in
//   list order. Any 32-bit number may be stored, members or not.
// - `static Value stringToEnum(std::string_view key) noexcept`: the value of an exact,
//   case-sensitive key (byte for byte, no trimming); the default member for any other
//   text. A binary search of a sorted contiguous table; never allocates.
// - `static std::string enumToString(Value value)`: the member's display text; the
//   default member's display text for a number that is no member. Display texts are
//   never keys. Throws only if allocating the text does.
// - `static Value getDefaultValue() noexcept`: the default member.
// - `static char const* getOCOSNamespaceName() noexcept`: "ovrin.internal.reference.property",
//   static, the same for every class.
// - `static char const* getOCOSClassName() noexcept`: the class's own name, static.
//
// All of them may be called from any number of threads at once.
#pragma once

#include <reference/property/Export.hpp>

#include <cstdint>
#include <string>
#include <string_view>

/// A member as its enumerator, `Name = number,`.
#define REFERENCE_PROPERTY_ENUMERATOR(Name, number, key, text) Name = number,

/// Nothing: a member left out of an expansion.
#define REFERENCE_PROPERTY_SKIP_MEMBER(Name, number, key, text)

/// Declares vocabulary class `Class` from its member list `MEMBERS`, as described above.
#define REFERENCE_PROPERTY_DECLARE_VOCABULARY(Class, MEMBERS)                                                 \
    class REFERENCE_PROPERTY_API Class {                                                                      \
    public:                                                                                                   \
        enum Value : std::uint32_t { MEMBERS(REFERENCE_PROPERTY_ENUMERATOR, REFERENCE_PROPERTY_ENUMERATOR) }; \
        Class() = delete;                                                                                     \
        static Value stringToEnum(std::string_view key) noexcept;                                             \
        static std::string enumToString(Value value);                                                         \
        static Value getDefaultValue() noexcept;                                                              \
        static char const* getOCOSNamespaceName() noexcept;                                                   \
        static char const* getOCOSClassName() noexcept;                                                       \
    };
