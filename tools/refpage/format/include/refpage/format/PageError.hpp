// One problem found in a page: where (file, text position, JSON pointer) and what.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

/// How much a problem weighs: an error keeps a page from loading or a run from passing.
enum class Severity { Error, Warning };

struct PageError {
    std::string source;      ///< file name, or what stands for it ("<sample>", "-")
    std::string path;        ///< JSON pointer of the offending value, as "/InputGroups/0/Inputs/2/Name"; may be empty
    std::string message;     ///< what is wrong, and what was expected; page text in it is already quoted
    std::size_t line = 0;    ///< 1-based line of the offending text; 0 when unknown (I/O errors)
    std::size_t column = 0;  ///< 1-based, in bytes; 0 exactly when line is

    /// "source:line:column: severity: message [pointer]"; the position is left out when
    /// unknown and the pointer when empty. The pointer is escaped for a terminal.
    std::string describe(Severity severity = Severity::Error) const;
};

using PageErrors = std::vector<PageError>;

}  // namespace refpage
