// Messages about pages on standard error, one line each, safe for a terminal.
#pragma once

#include <refpage/docset/LoadSet.hpp>
#include <refpage/format/PageError.hpp>

namespace refpage {

/// Prints each error on stderr as "file:line:column: severity: message [pointer]", on one
/// line: control characters from file names or page text (line feeds and tabs included) are escaped.
void printErrors(PageErrors const& errors, Severity severity);

/// Prints what loading said of every input, in input order: warnings unless `quiet`, errors always.
void printLoadDiagnostics(LoadedSet const& loaded, bool quiet);

}  // namespace refpage
