// Reading a page: JSON text to a checked PageDocument in one pass, no host
// involved and no JSON value of the whole text ever built.
#pragma once

#include <cstddef>
#include <refpage/format/Document.hpp>
#include <refpage/format/PageError.hpp>
#include <string_view>

namespace refpage {

/// Objects and arrays may nest this deep (the page itself is level 1; real pages
/// reach about 6). Deeper text is refused where the limit is crossed, before any
/// value of it is kept.
inline constexpr std::size_t maxNesting = 64;

/// Errors (and, separately, warnings) kept per page; one more entry says how many were left out.
inline constexpr std::size_t maxReported = 100;

struct LoadOptions {
    bool strict = false;  ///< warnings count as errors
};

struct ParsedPage {
    PageNode root;        ///< the RefItem record; meaningful only when errors is empty
    PageErrors errors;    ///< everything that keeps the page from loading, in text order
    PageErrors warnings;  ///< loadable, but worth saying (enumeration values that name no member)

    bool ok() const noexcept { return errors.empty(); }
};

/// Reads `text` (UTF-8; a UTF-8 byte order mark is skipped) as one JSON object that
/// is a page, checking every key and value against the page's property tables as it
/// goes. Malformed text (anything after the one value but whitespace, NUL included)
/// gives one error with its line and column and nothing else; otherwise every bad key
/// and value is an error with its position and pointer. Time is linear in the text.
/// The page's own "$schema" key (the page alone may have it) must be a string and is dropped.
/// With options.strict the warnings are errors as well. Never throws.
ParsedPage parsePage(std::string_view text, std::string_view source, LoadOptions const& options = {});

}  // namespace refpage
