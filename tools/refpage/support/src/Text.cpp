#include <utf8.h>

#include <algorithm>
#include <refpage/support/Text.hpp>

namespace refpage {

std::string utf8(std::u16string_view text) {
    try {
        return utf8::utf16to8(text);
    } catch (utf8::exception const&) {
        std::u16string cleaned(text);
        for (std::size_t i = 0; i < cleaned.size(); ++i) {
            char16_t const unit = cleaned[i];
            bool const lead = unit >= 0xD800 && unit <= 0xDBFF;
            bool const paired = lead && i + 1 < cleaned.size() && cleaned[i + 1] >= 0xDC00 && cleaned[i + 1] <= 0xDFFF;
            if (paired)
                ++i;
            else if (unit >= 0xD800 && unit <= 0xDFFF)
                cleaned[i] = 0xFFFD;
        }
        return utf8::utf16to8(cleaned);
    }
}

std::string asciiLowered(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), asciiLower);
    return out;
}

bool equalsIgnoringAsciiCase(std::string_view a, std::string_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return asciiLower(x) == asciiLower(y); });
}

}  // namespace refpage
