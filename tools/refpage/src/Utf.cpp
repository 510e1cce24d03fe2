#include <utf8.h>

#include <iterator>
#include <refpage/Utf.hpp>

namespace refpage {

std::u16string toUtf16(std::string_view text) {
    std::u16string result;
    result.reserve(text.size());
    utf8::utf8to16(text.begin(), text.end(), std::back_inserter(result));
    return result;
}

std::string toUtf8(std::u16string_view text) {
    std::string result;
    result.reserve(text.size());
    utf8::utf16to8(text.begin(), text.end(), std::back_inserter(result));
    return result;
}

}  // namespace refpage
