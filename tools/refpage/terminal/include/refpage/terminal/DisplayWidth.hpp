// How wide text is on a terminal, in columns, by grapheme cluster: East Asian wide
// characters and emoji take 2, combining and zero-width marks 0, a cluster takes
// the width of its widest character (2 for emoji sequences and flags), an invalid
// byte 1, control characters 0 (callers escape them first; see TextEscape.hpp).
#pragma once

#include <cstddef>
#include <string_view>

namespace refpage {

/// Columns `text` (UTF-8, one line) takes on a terminal.
std::size_t displayWidth(std::string_view text);

/// The longest prefix of `text` made of whole grapheme clusters that takes at most `width` columns.
std::string_view fitWidth(std::string_view text, std::size_t width);

}  // namespace refpage
