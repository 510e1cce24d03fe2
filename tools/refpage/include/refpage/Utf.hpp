// Exact conversions between the page format's UTF-8 and the records' UTF-16.
#pragma once

#include <string>
#include <string_view>

namespace refpage {

/// Throws utf8::exception for invalid UTF-8. Embedded zeros and non-BMP characters are kept.
std::u16string toUtf16(std::string_view text);
/// Throws utf8::exception for an unpaired surrogate.
std::string toUtf8(std::u16string_view text);

}  // namespace refpage
