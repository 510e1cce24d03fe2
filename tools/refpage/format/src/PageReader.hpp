// Reading a page's text: the JSON parser's events made into a checked PageDocument by
// the page reader (PageReader.cpp): a stack of the open objects and arrays (at most
// maxNesting), every key and value checked against the property tables as it comes, the
// nodes it keeps built, what is wrong recorded with its position. Token positions are
// JsonEvents', wording ReaderMessages', capping Findings'; memory policy stays here.
#pragma once

#include <cstddef>
#include <refpage/format/Document.hpp>
#include <string>
#include <string_view>

#include "Findings.hpp"

namespace refpage {

/// What reading one text found.
struct ReadFindings {
    Findings errors;
    Findings warnings;
    std::string pointer;  ///< of the value being read when reading stopped early
};

/// Reads `text` (a UTF-8 byte order mark skipped) into `root`, whose table is set. A text
/// that is not one well-formed value within the nesting limit leaves exactly one error.
/// Throws std::bad_alloc when memory runs out, with `findings.pointer` saying where.
void readPageText(std::string_view text, std::string_view source, PageNode& root, ReadFindings& findings);

}  // namespace refpage
