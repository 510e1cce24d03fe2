// Loading a page: parse, then build through the host. A page that fails is
// never half-built: either a whole host object or errors.
#pragma once

#include <filesystem>
#include <reference/property/HostArray.hpp>
#include <reference/property/RefItem.hpp>
#include <refpage/format/PageError.hpp>
#include <refpage/format/Parser.hpp>
#include <refpage/format/Inputs.hpp>  // readTextFile, for the loader's existing callers
#include <string>
#include <string_view>

namespace refpage {

struct LoadResult {
    reference::property::HostArrayPtr page;  ///< the RefItem host object; empty when errors is not
    PageErrors errors;
    PageErrors warnings;

    bool ok() const noexcept { return page != nullptr; }
};

/// Registers the host classes and builds the property tables, once per process; every loader calls it.
void ensureHostClasses();

/// Parses and builds `text`. Never throws: running out of memory is an error saying so.
LoadResult loadPage(std::string_view text, std::string_view source, LoadOptions const& options = {});
/// Reads the file first; an unreadable file is one error.
LoadResult loadPageFile(std::filesystem::path const& file, LoadOptions const& options = {});

/// Builds a parsed page, turning a build failure into an error of `parsed`'s source,
/// with its line and column in `text` (the text parsed) when given. Never throws.
LoadResult buildPage(ParsedPage const& parsed, std::string_view source, std::string_view text = {});

/// The native page a RefItem host object wraps; borrowed from `page`.
reference::property::RefItem const& nativePage(oxArray_tag const* page);

}  // namespace refpage
