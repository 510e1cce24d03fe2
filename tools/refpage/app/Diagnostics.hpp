// Messages about pages on standard error, one line each, safe for a terminal.
#pragma once

#include <refpage/PageError.hpp>

namespace refpage {

/// Prints each error on stderr as `prefix` and its description, on one line: control
/// characters from file names or page text (line feeds and tabs included) are escaped.
void printErrors(PageErrors const& errors, char const* prefix);

}  // namespace refpage
