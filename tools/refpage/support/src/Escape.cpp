#include <fmt/format.h>
#include <utf8.h>

#include <refpage/support/Escape.hpp>

namespace refpage {

namespace {

/// `text` without quotes, escaped as `quoted` escapes it, except that quotes and
/// backslashes, and line feeds and tabs when `keepLayout`, stay as they are.
std::string escapeControls(std::string_view text, bool keepLayout) {
    std::string result;
    result.reserve(text.size());
    auto it = text.begin();
    while (it != text.end()) {
        auto const byte = static_cast<unsigned char>(*it);
        if ((byte >= 0x20 && byte < 0x7f) || (keepLayout && (byte == '\n' || byte == '\t'))) {
            result += *it++;
            continue;
        }
        // One code point (or one invalid byte), escaped exactly as fmt escapes it inside quotes.
        auto next = it;
        try {
            utf8::next(next, text.end());
        } catch (utf8::exception const&) {
            next = it + 1;
        }
        std::string const escaped = quoted(std::string_view(&*it, static_cast<std::size_t>(next - it)));
        result.append(escaped, 1, escaped.size() - 2);
        it = next;
    }
    return result;
}

}  // namespace

std::string quoted(std::string_view text) {
    return fmt::format("{:?}", text);
}

std::string displayable(std::string_view text) {
    return escapeControls(text, true);
}

std::string excerpt(std::string_view text, std::size_t limit) {
    if (text.size() <= limit) return escapeControls(text, false);
    std::size_t end = limit;
    // Back up to the start of a character: continuation bytes are 10xxxxxx.
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    return escapeControls(text.substr(0, end), false) + "...";
}

}  // namespace refpage
