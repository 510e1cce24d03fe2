// Reading a page: JSON text to a checked PageDocument, no host involved.
#pragma once

#include <optional>
#include <refpage/Json.hpp>
#include <refpage/PageDocument.hpp>
#include <refpage/PageError.hpp>
#include <string_view>

namespace refpage {

struct LoadOptions {
    bool strict = false;  ///< warnings count as errors
};

struct ParsedPage {
    PageNode root;        ///< the RefItem record; meaningful only when errors is empty
    PageErrors errors;    ///< everything that keeps the page from loading
    PageErrors warnings;  ///< loadable, but worth saying (enumeration values that name no member)

    bool ok() const noexcept { return errors.empty(); }
};

/// The JSON of `text`, or nullopt with the errors added to `errors`: one for malformed
/// text (with line and column), or one per key repeated within an object (with its path).
std::optional<Json> parseJson(std::string_view text, std::string_view source, PageErrors& errors);

/// Checks `json` against the page's property tables. Collects every error and warning;
/// with options.strict the warnings are errors as well.
ParsedPage readPage(Json const& json, std::string_view source, LoadOptions const& options = {});

/// parseJson, then readPage.
ParsedPage parsePage(std::string_view text, std::string_view source, LoadOptions const& options = {});

}  // namespace refpage
