#include "Diagnostics.hpp"

#include <fmt/format.h>

#include <cstdio>
#include <refpage/support/Escape.hpp>
#include <string>

namespace refpage {

namespace {

/// `text` on one terminal line: what displayable() keeps of line feeds and tabs escaped too.
std::string oneLine(std::string const& text) {
    std::string out;
    for (char const c : displayable(text)) {
        if (c == '\n')
            out += "\\n";
        else if (c == '\t')
            out += "\\t";
        else
            out += c;
    }
    return out;
}

}  // namespace

void printErrors(PageErrors const& errors, Severity severity) {
    for (auto const& error : errors) fmt::print(stderr, "{}\n", oneLine(error.describe(severity)));
}

void printLoadDiagnostics(LoadedSet const& loaded, bool quiet) {
    for (auto const& said : loaded.diagnostics) {
        if (!quiet) printErrors(said.warnings, Severity::Warning);
        printErrors(said.errors, Severity::Error);
    }
}

}  // namespace refpage
