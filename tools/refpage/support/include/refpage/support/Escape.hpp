// Text from pages made safe for where it goes: quoted inside a message, or shown
// on a terminal. Both keep valid printable UTF-8 as itself and never let a control
// character (C0, DEL, C1), a formatting character or an invalid byte through raw.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace refpage {

/// `text` in double quotes, for messages: quotes, backslashes, control and other
/// non-printable characters escaped ("\x1b", "\n", "\u{202e}"), invalid UTF-8 as "\xff".
std::string quoted(std::string_view text);

/// `text` for a terminal, without quotes: line feeds and tabs kept, quotes and
/// backslashes kept, everything else escaped as `quoted` escapes it.
std::string displayable(std::string_view text);

/// At most the first `limit` bytes of `text` (never splitting a character), followed
/// by "..." when cut, on one line: as `displayable` but line feeds and tabs escaped
/// too. Reads nothing of `text` beyond what it shows; for quoting raw page text.
std::string excerpt(std::string_view text, std::size_t limit = 40);

}  // namespace refpage
