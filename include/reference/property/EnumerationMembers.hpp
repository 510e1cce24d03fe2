// How a vocabulary is written down: its header lists every member once, as
//
//     #define REFERENCE_PROPERTY_<CLASS>_MEMBERS(MEMBER, DEFAULT)
//         MEMBER(Name, number, "key", "Display_Text") ...
//
// with DEFAULT in place of MEMBER for the one default member. The enumerators,
// the key table, the display texts and the glue's member view are all
// expansions of that list. Macros only: nothing here is compiled into a symbol.
#pragma once

/// A member as its enumerator, `Name = number,`.
#define REFERENCE_PROPERTY_ENUMERATOR(Name, number, key, text) Name = number,

/// Nothing: a member left out of an expansion.
#define REFERENCE_PROPERTY_SKIP_MEMBER(Name, number, key, text)
