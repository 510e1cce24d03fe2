// The JSON Schema (draft 2020-12) of the page format, generated from the glue's
// property tables (allTables) and enumeration member lists (allEnumerations), the
// same ones pages are loaded with, so it names exactly the keys and values loading takes:
//   - "$defs" holds one object schema per record class (the page is "RefItem", the
//     root's "$ref"), each listing every key of its table with its type and a
//     description, and "additionalProperties": false;
//   - a text is a string; a flag a boolean; a string list an array of strings; a list of
//     records an array of that record; AppThumbnail one object;
//   - an enumeration ("$defs" by class name) is one of its keys, an integer 0 to
//     4294967295, or an array of exactly one of those;
//   - the page alone may hold "$schema", a string that loading ignores.
// What no JSON Schema says: a key given twice (loading refuses it, JSON Schema sees the
// last), and 1.0 for an enumeration (an integer to JSON Schema, a floating-point number
// that loading refuses). A number naming no member validates; loading stores it with a
// warning. A key naming no member fails validation; loading warns (fails with --strict).
#pragma once

#include <refpage/format/Json.hpp>
#include <string>

namespace refpage {

/// The schema as a JSON value, keys in a fixed order.
Json pageSchema();

/// The schema as text: two-space indentation, ending with a line feed; the same bytes on every run.
std::string pageSchemaText();

}  // namespace refpage
