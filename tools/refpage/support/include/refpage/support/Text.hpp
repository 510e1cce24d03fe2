// Small text helpers every layer shares: page text (UTF-16) as UTF-8, and ASCII
// case, which file systems and URL schemes ignore while everything else keeps it.
#pragma once

#include <string>
#include <string_view>

namespace refpage {

/// The UTF-8 of page text, never throwing: an unpaired surrogate (which loading already
/// refuses) becomes U+FFFD; everything else converts exactly.
std::string utf8(std::u16string_view text);

/// `c` with A-Z made a-z; every other byte, UTF-8 included, as it is.
constexpr char asciiLower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// `text` with A-Z made a-z.
std::string asciiLowered(std::string_view text);

/// True when `a` and `b` differ at most in ASCII case.
bool equalsIgnoringAsciiCase(std::string_view a, std::string_view b) noexcept;

}  // namespace refpage
