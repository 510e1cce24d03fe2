// The words of the page reader's errors and warnings, in one place. Page text quoted in
// them is escaped (quoted or excerpted), so a message is safe to print.
#pragma once

#include <cstdint>
#include <reference/glue/PropertyTable.hpp>
#include <string>
#include <string_view>

namespace refpage::messages {

/// "a" or "an" for `word`.
std::string_view article(std::string_view word);

/// "a SeeAlso record", "an Input record".
std::string describeRecord(reference::glue::PropertyTable const& table);

/// "duplicate key \"Href\"".
std::string duplicateKey(std::string_view key);

/// "unknown key \"Hrf\" in a RefItem record; did you mean \"Href\"?"
std::string unknownKey(std::string_view key, reference::glue::PropertyTable const& table);

/// "expected a string, found number 3" for a value of kind `expected` ("a string").
std::string wrongType(std::string_view expected, std::string_view found);

/// "expected a SyntaxType key or an unsigned 32-bit number, found null".
std::string notAnEnumeration(reference::glue::EnumerationInfo const& info, std::string_view found);

/// "-1 is a negative number; expected a SyntaxType key or an unsigned 32-bit number".
std::string notAnEnumerationNumber(reference::glue::EnumerationInfo const& info, std::string_view number,
                                   std::string_view what);

/// "4294967296 is outside the unsigned 32-bit range".
std::string outOfRange(std::string_view number);

/// "\"usag\" names no member of SyntaxType; stored 0 (Unknown); did you mean \"usage\"?"
std::string keyNamesNoMember(reference::glue::EnumerationInfo const& info, std::string_view key, std::uint32_t value);

/// "40 names no member of SyntaxType; stored 40 (...)".
std::string numberNamesNoMember(reference::glue::EnumerationInfo const& info, std::uint32_t value);

}  // namespace refpage::messages
