// One problem found in a page: where (file, and a JSON path or a text position)
// and what.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace refpage {

struct PageError {
    std::string source;      ///< file name, or what stands for it ("<sample>")
    std::string path;        ///< JSON pointer of the offending value, as "/InputGroups/0/Inputs/2/Name"; may be empty
    std::string message;     ///< what is wrong, and what was expected
    std::size_t line = 0;    ///< 1-based text position for malformed JSON; 0 when the path says where
    std::size_t column = 0;  ///< 1-based, in bytes

    /// "source:line:column: message" or "source: path: message".
    std::string describe() const;
};

using PageErrors = std::vector<PageError>;

}  // namespace refpage
