#include <refpage/site/Html.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/Text.hpp>

namespace refpage {

namespace {

constexpr std::string_view replacement = "\xef\xbf\xbd";

/// Length of the valid UTF-8 sequence at `text[i]`, or 0.
std::size_t utf8Length(std::string_view text, std::size_t i) {
    auto const byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
    unsigned char const lead = byte(i);
    std::size_t length = 0;
    char32_t min = 0;
    char32_t code = 0;
    if (lead < 0x80) return 1;
    if (lead >= 0xc2 && lead <= 0xdf) length = 2, min = 0x80, code = lead & 0x1f;
    else if (lead >= 0xe0 && lead <= 0xef) length = 3, min = 0x800, code = lead & 0x0f;
    else if (lead >= 0xf0 && lead <= 0xf4) length = 4, min = 0x10000, code = lead & 0x07;
    else return 0;
    if (i + length > text.size()) return 0;
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(i + k) & 0xc0) != 0x80) return 0;
        code = (code << 6) | (byte(i + k) & 0x3f);
    }
    if (code < min || code > 0x10ffff || (code >= 0xd800 && code <= 0xdfff)) return 0;
    return length;
}

}  // namespace

std::string escapeHtml(std::string_view text) {
    std::string out;
    out.reserve(text.size() + text.size() / 8);
    for (std::size_t i = 0; i < text.size();) {
        char const c = text[i];
        std::size_t const length = utf8Length(text, i);
        if (length == 0) {
            out += replacement;
            ++i;
            continue;
        }
        if (length > 1) {
            // C1 controls (U+0080..U+009F) are two bytes starting with 0xC2.
            bool const c1 = length == 2 && static_cast<unsigned char>(c) == 0xc2 &&
                            static_cast<unsigned char>(text[i + 1]) < 0xa0;
            if (c1) out += replacement;
            else out.append(text.substr(i, length));
            i += length;
            continue;
        }
        switch (c) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"': out += "&quot;"; break;
            case '\'': out += "&#39;"; break;
            case '\t':
            case '\n': out += c; break;
            default:
                if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) out += replacement;
                else out += c;
        }
        ++i;
    }
    return out;
}

bool isWebUrl(std::string_view url) {
    std::size_t const colon = url.find(':');
    if (colon == std::string_view::npos) return false;
    std::string_view const scheme = url.substr(0, colon);
    if (!equalsIgnoringAsciiCase(scheme, "http") && !equalsIgnoringAsciiCase(scheme, "https")) return false;
    if (!url.substr(colon + 1).starts_with("//") || url.size() <= colon + 3) return false;
    for (unsigned char c : url)
        if (c <= 0x20 || c == 0x7f || c == '\\') return false;
    return true;
}

}  // namespace refpage
